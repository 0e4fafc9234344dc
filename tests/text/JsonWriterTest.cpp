#include "text/JsonWriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallowmere {
namespace {

TEST(JsonWriter, WritesCompactJsonWithSeparatorsInCallOrder) {
    JsonWriter json;
    json.beginObject();
    json.key("zeta");
    json.integer(std::numeric_limits<std::int64_t>::min());
    json.key("alpha");
    json.beginArray();
    json.beginObject();
    json.endObject();
    json.beginArray();
    json.endArray();
    json.boolean(true);
    json.null();
    json.date(63113904000.0);
    json.endArray();
    json.key("p\xC3\xA9\xFF");
    json.string("/a\nb\xFF");
    json.key("last");
    json.boolean(false);
    json.endObject();
    EXPECT_EQ(json.text(),
              "{\"zeta\":-9223372036854775808,\"alpha\":[{},[],true,null,63113904000.0],"
              "\"p\xC3\xA9\\udcff\":\"/a\\nb\\udcff\",\"last\":false}");
}

}  // namespace
}  // namespace tallowmere
