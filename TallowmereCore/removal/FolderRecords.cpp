#include "removal/FolderRecords.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

#include "measurement/Date.h"
#include "text/JsonText.h"
#include "text/Sha256.h"

namespace tallowmere {

namespace {

std::string_view kindText(EntryKind kind) {
    switch (kind) {
        case EntryKind::symbolicLink:
            return "link";
        case EntryKind::directory:
            return "directory";
        case EntryKind::regularFile:
            return "file";
        default:
            return "other";
    }
}

// Each field as its byte length, ":" and its bytes, so no field can pass for another.
void appendField(std::string& text, std::string_view field) {
    char length[24];
    const auto end = std::to_chars(std::begin(length), std::end(length), field.size()).ptr;
    text.append(length, end);
    text += ':';
    text += field;
}

// "seconds.nanoseconds" of the status change, or "-" when the file system keeps none.
std::string_view changeText(const EntryStatus& status, char (&buffer)[48]) {
    if (!status.hasStatusChanged) {
        return "-";
    }
    const int length = std::snprintf(buffer, sizeof buffer, "%lld.%09d",
                                     static_cast<long long>(status.statusChangedSeconds),
                                     static_cast<int>(status.statusChangedNanoseconds));
    return {buffer, static_cast<std::size_t>(length)};
}

// The five fields of an item's record, then its change time.
void appendRecord(std::string& text, std::string_view relativePath, const EntryStatus& status,
                  std::size_t& recordLength) {
    const std::size_t start = text.size();
    appendField(text, relativePath);
    appendField(text, kindText(status.kind));
    appendField(text, status.identity.text());
    appendField(text, JsonText::shortestNumber(
                          dateFromFileTime(status.modifiedSeconds, status.modifiedNanoseconds)));
    appendField(text,
                status.kind == EntryKind::directory ? "-1" : std::to_string(status.logicalBytes));
    recordLength = text.size() - start;
    char buffer[48];
    appendField(text, changeText(status, buffer));
}

}  // namespace

void FolderRecords::add(std::string_view relativePath, const EntryStatus& status) {
    const std::size_t offset = m_text.size();
    std::size_t recordLength = 0;
    appendRecord(m_text, relativePath, status, recordLength);
    m_spans.push_back({offset, static_cast<std::uint32_t>(recordLength),
                       static_cast<std::uint32_t>(m_text.size() - offset)});
    ++m_itemCount;
    m_allocatedBytes += status.allocatedBytes;
}

void FolderRecords::seal() {
    // Relative paths are distinct and come first, so this is also the order of the records.
    std::ranges::sort(m_spans, {}, [this](const Span& span) { return fullRecord(span); });
}

std::string FolderRecords::fingerprint() const {
    Sha256 digest;
    for (const Span& span : m_spans) {
        digest.update(record(span));
    }
    return digest.hexDigest();
}

std::string FolderRecords::changeFingerprint() const {
    // The records fix the items and their order, so their change times alone are enough here.
    Sha256 digest;
    for (const Span& span : m_spans) {
        if (!record(span).starts_with("0:")) {  // the folder's own record
            digest.update(fullRecord(span).substr(span.recordLength));
        }
    }
    return digest.hexDigest();
}

bool FolderRecords::contains(std::string_view relativePath, const EntryStatus& status) const {
    std::string wanted;
    std::size_t recordLength = 0;
    appendRecord(wanted, relativePath, status, recordLength);
    const auto found =
        std::ranges::lower_bound(m_spans, std::string_view(wanted), {},
                                 [this](const Span& span) { return fullRecord(span); });
    return found != m_spans.end() && fullRecord(*found) == wanted;
}

std::string_view FolderRecords::record(const Span& span) const {
    return std::string_view(m_text).substr(span.offset, span.recordLength);
}

std::string_view FolderRecords::fullRecord(const Span& span) const {
    return std::string_view(m_text).substr(span.offset, span.fullLength);
}

}  // namespace tallowmere
