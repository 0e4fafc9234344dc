#pragma once

#include <QString>
#include <string>
#include <string_view>

// Paths and owner names are byte strings; Qt's texts are UTF-16. These carry any byte string
// through a QString and back unchanged: bytes outside well-formed UTF-8 travel as the lone
// surrogates U+DC80 to U+DCFF (the surrogateescape convention), as in the core's JSON.
namespace tallowmere::NativeText {

QString toQString(std::string_view bytes);

// The bytes `text` stands for; a lone surrogate outside U+DC80 to U+DCFF, which no byte
// string gives, is written as U+FFFD.
std::string fromQString(const QString& text);

}  // namespace tallowmere::NativeText
