#include "text/JsonWriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallowmere {
namespace {

TEST(JsonWriter, WritesCompactJsonWithSeparatorsInCallOrder) {
    JsonWriter json;
    json.beginObject();
    json.key("version");
    json.integer(1);
    json.key("zeta");
    json.boolean(true);
    json.key("alpha");
    json.null();
    json.key("empty");
    json.beginObject();
    json.endObject();
    json.key("none");
    json.beginArray();
    json.endArray();
    json.key("findings");
    json.beginArray();
    json.beginObject();
    json.key("path");
    json.string("/home/u/.cache/a\nb\xFF");
    json.key("saved");
    json.date(63113904000.0);
    json.endObject();
    json.beginObject();
    json.key("bytes");
    json.integer(std::numeric_limits<std::int64_t>::min());
    json.endObject();
    json.integer(-7);
    json.boolean(false);
    json.date(0.5);
    json.endArray();
    json.key("k\"\xC3\xA9");
    json.string("");
    json.endObject();
    EXPECT_EQ(json.text(),
              R"({"version":1,"zeta":true,"alpha":null,"empty":{},"none":[],"findings":[)"
              R"({"path":"/home/u/.cache/a\nb\udcff","saved":63113904000.0},)"
              R"({"bytes":-9223372036854775808},-7,false,0.5],"k\")"
              "\xC3\xA9"
              R"(":""})");
}

TEST(JsonWriter, WritesTopLevelScalarsAndNestedArrays) {
    JsonWriter json;
    json.beginArray();
    json.beginArray();
    json.beginArray();
    json.endArray();
    json.integer(0);
    json.endArray();
    json.beginArray();
    json.endArray();
    json.endArray();
    EXPECT_EQ(json.text(), "[[[],0],[]]");

    JsonWriter scalar;
    scalar.date(-1.0);
    EXPECT_EQ(scalar.text(), "-1.0");
}

}  // namespace
}  // namespace tallowmere
