#include "TerminalLines.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "text/TextRules.h"

namespace tallowmere::cli {

namespace {

// The byte where the code point numbered `count` starts (or the end).
std::size_t byteOfCodePoint(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (std::size_t seen = 0; seen < count && at < text.size(); ++seen) {
        at += std::max<std::size_t>(1, TextRules::utf8SequenceLength(text, at));
    }
    return at;
}

std::size_t columnsOf(std::string_view text) {
    return TextRules::codePointCount(text);
}

// One line broken at spaces to fit, continuation lines indented as the line is; the spaces
// between words on a line stay as they were.
std::string wrappedLine(std::string_view line, std::size_t columns) {
    const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
    if (columnsOf(line) <= columns || indent * 2 >= columns) {
        return std::string(line);
    }
    std::string text(line.substr(0, indent));
    std::size_t used = indent;
    std::size_t at = indent;
    while (at < line.size()) {
        const std::size_t wordStart = std::min(line.find_first_not_of(' ', at), line.size());
        const std::size_t wordEnd = std::min(line.find(' ', wordStart), line.size());
        const std::string_view spaces = line.substr(at, wordStart - at);
        const std::string_view word = line.substr(wordStart, wordEnd - wordStart);
        const std::size_t width = columnsOf(word);
        if (used > indent && used + spaces.size() + width > columns) {
            text += "\n" + std::string(indent, ' ');
            used = indent;
        } else {
            text += spaces;
            used += spaces.size();
        }
        text += word;
        used += width;
        at = wordEnd;
    }
    return text;
}

}  // namespace

std::optional<std::size_t> terminalColumns(int descriptor) {
    winsize size{};
    if (!::isatty(descriptor) || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return ::isatty(descriptor) ? std::optional<std::size_t>(80) : std::nullopt;
    }
    return size.ws_col;
}

std::string fitted(std::string_view text, std::size_t columns) {
    const std::size_t length = columnsOf(text);
    if (length <= columns) {
        return std::string(text);
    }
    if (columns == 0) {
        return {};
    }
    const std::size_t kept = columns - 1;
    const std::size_t head = kept / 2;
    const std::size_t tail = kept - head;
    return std::string(text.substr(0, byteOfCodePoint(text, head))) + "…" +
           std::string(text.substr(byteOfCodePoint(text, length - tail)));
}

std::string wrapped(std::string_view text, std::size_t columns) {
    std::string result;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        result += wrappedLine(text.substr(at, end - at), columns);
        if (end < text.size()) {
            result += '\n';
        }
        at = end + 1;
    }
    return result;
}

std::string forStandardOutput(std::string text) {
    if (const auto columns = terminalColumns(STDOUT_FILENO)) {
        return wrapped(text, *columns);
    }
    return text;
}

}  // namespace tallowmere::cli
