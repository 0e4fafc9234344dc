#include "removal/AIStorageCleanup.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

constexpr Date now = 900'000'000;
constexpr Date day = 86400;

bool eligible(const std::string& path, Date age, const std::string& category, bool recent = false) {
    return AIStorageCleanup::eligible(path, now - age, category, now, recent);
}

TEST(AIStorageCleanup, AgeLimitsPerCategory) {
    EXPECT_FALSE(eligible("/h/.cache/x/blob", day - 1, "Cache"));
    EXPECT_TRUE(eligible("/h/.cache/x/blob", day - 1, "Cache", true));
    EXPECT_TRUE(eligible("/h/.cache/x/blob", day, "Cache"));
    EXPECT_FALSE(eligible("/h/.cache/x/blob", -10, "Cache"));  // modified in the future

    EXPECT_FALSE(eligible("/h/logs/build.log", 6 * day, "Logs"));
    EXPECT_TRUE(eligible("/h/logs/build.log", 7 * day, "Logs"));
    EXPECT_TRUE(eligible("/h/logs/build.log", 6 * day, "Logs", true));
    EXPECT_FALSE(AIStorageCleanup::eligible("/h/logs/a.log", distantFuture, "Logs", now, false));
}

TEST(AIStorageCleanup, OnlyCacheAndLogFilesQualify) {
    EXPECT_FALSE(eligible("/h/logs/trace.txt", 100 * day, "Logs"));
    EXPECT_TRUE(eligible("/h/cache/trace.txt", 100 * day, "Cache"));
    for (const char* category : {"cache", "logs", "Agent data", "Models", ""}) {
        EXPECT_FALSE(eligible("/h/x/build.log", 100 * day, category, true)) << category;
    }
    for (const char* name :
         {"app.log.7", "Server.LOG", "app.log.20240101", "x.log.+3", "a..log.-1"}) {
        EXPECT_TRUE(eligible(std::string("/h/logs/") + name, 8 * day, "Logs")) << name;
    }
    for (const char* name : {"app.log.x", "app.log.", "log.7", "app.logs", "app.log.old",
                             "app.log.99999999999999999999", "app.log.+-3", "app.log.3 "}) {
        EXPECT_FALSE(eligible(std::string("/h/logs/") + name, 8 * day, "Logs")) << name;
    }
}

TEST(AIStorageCleanup, RefusesProtectedFoldersAndSensitiveNames) {
    for (const char* path :
         {"/h/.cache/Models/blob", "/h/.cache/a/History/b/blob", "/Sessions/h/.cache/blob",
          "/h/.cache/.GIT/blob", "/h/weights/c/blob"}) {
        EXPECT_FALSE(eligible(path, 100 * day, "Cache")) << path;
    }
    for (const char* name : {"state.vscdb",
                             "index.sqlite3-wal",
                             "model.GGUF",
                             "npm.lock",
                             ".env.local",
                             ".env",
                             "credentials.json",
                             "my_token_cache",
                             "tokenizer.json",
                             "oauth-cache.bin",
                             "db.SQLITE",
                             "x.journal-journal",
                             "w.pth",
                             "a.DB",
                             "a.pt",
                             "a.ldb",
                             "a.pem",
                             "a.key",
                             "a.p12",
                             "a.pfx",
                             "a.onnx",
                             "a.sqlite",
                             "a.safetensors",
                             "log-shm",
                             "x.Secret",
                             "pre_auth"}) {
        EXPECT_FALSE(eligible(std::string("/h/.cache/") + name, 100 * day, "Cache")) << name;
    }
    for (const char* name : {"x.env", "env.json", "models.json", ".lockfile", "history", "a.dbx",
                             "a.p", "a.safetensor", "a.ptt", "toke", "secre", "cred"}) {
        EXPECT_TRUE(eligible(std::string("/h/.cache/") + name, 100 * day, "Cache")) << name;
    }
    EXPECT_FALSE(eligible("/h/logs/sessions/a.log", 100 * day, "Logs"));
    // Still listed among old logs, which only tell what is there.
    const auto verdict =
        AIStorageCleanup::verdictInFolder("a.log", true, now - 8 * day, "Logs", now);
    EXPECT_TRUE(verdict.oldLog);
    EXPECT_FALSE(verdict.eligibleRecent);
}

}  // namespace
}  // namespace tallowmere
