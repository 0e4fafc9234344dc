#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace tallowmere {

// Builds compact JSON (no spaces, no line breaks) in memory, inserting commas itself. The
// caller keeps the calls well formed (a key before each member value, containers closed in
// order); the writer does not check them.
class JsonWriter {
public:
    // Opens an object; its members follow as key() and value pairs.
    void beginObject();

    // Closes the innermost open object.
    void endObject();

    // Opens an array.
    void beginArray();

    // Closes the innermost open array.
    void endArray();

    // Writes a member name; it may hold any bytes, escaped as string() escapes them.
    void key(std::string_view name);

    // Writes any bytes losslessly as a JSON string (see JsonText::quoted).
    void string(std::string_view bytes);

    // Writes a signed 64-bit integer in decimal.
    void integer(std::int64_t value);

    // Writes true or false.
    void boolean(bool value);

    // Writes null.
    void null();

    // Writes a date in seconds as the shortest number that reads back as the same double,
    // always with a fraction or exponent (63113904000 is written 63113904000.0); infinities and
    // NaN, which JSON cannot hold, as null.
    void date(double seconds);

    // Writes what was built so far to `out` and forgets it, so long output needs little
    // memory; later calls go on where it stopped.
    void flushTo(std::ostream& out);

    // The JSON written so far.
    const std::string& text() const { return buffer; }

private:
    void beforeValue();

    std::string buffer;
    bool needsComma = false;
};

}  // namespace tallowmere
