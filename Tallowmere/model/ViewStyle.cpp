#include "ViewStyle.h"

#include <QLocale>
#include <array>
#include <utility>

#include "NativeText.h"
#include "catalog/StorageLayout.h"
#include "catalog/ToolCatalog.h"
#include "text/SizeText.h"

namespace tallowmere {

namespace {

constexpr std::array<std::array<double, 3>, 8> segmentColors{{
    {0.76, 0.84, 0.67},
    {0.72, 0.80, 0.88},
    {0.90, 0.80, 0.67},
    {0.74, 0.85, 0.81},
    {0.90, 0.78, 0.77},
    {0.85, 0.84, 0.74},
    {0.79, 0.84, 0.87},
    {0.87, 0.83, 0.79},
}};

constexpr std::array<std::pair<const char*, int>, 8> fixedColors{{
    {"Cursor", 0},
    {"Codex", 1},
    {"OpenCode", 2},
    {"Antigravity", 3},
    {"Cline", 4},
    {"GitHub Copilot", 5},
    {"Gemini CLI", 6},
    {"IBM Bob", 7},
}};

// The owners that have a badge of their own, with its letters.
constexpr std::array<std::pair<const char*, const char*>, 25> badges{{
    {"Cursor", "Cu"},      {"Codex", "Cx"},          {"OpenCode", "OC"},     {"Hermes Agent", "HA"},
    {"Antigravity", "Ag"}, {"Kiro", "Ki"},           {"Cline", "Cl"},        {"Roo Code", "RC"},
    {"Kilo Code", "KC"},   {"Goose", "Go"},          {"Amp", "Am"},          {"Pi", "Pi"},
    {"Qwen Code", "QC"},   {"GitHub Copilot", "GC"}, {"Claude Code", "CC"},  {"Gemini CLI", "Ge"},
    {"Windsurf", "Ws"},    {"Ollama", "Ol"},         {"Hugging Face", "HF"}, {"LM Studio", "LM"},
    {"OpenClaw", "OW"},    {"Whisper", "Wh"},        {"Continue", "Co"},     {"PyTorch", "PT"},
    {"IBM Bob", "IB"},
}};

std::size_t colorIndex(const QString& owner) {
    for (const auto& [name, index] : fixedColors) {
        if (owner == QLatin1String(name)) {
            return static_cast<std::size_t>(index);
        }
    }
    const auto owners = AIStorageScanner::supportedOwners();
    const auto bytes = NativeText::fromQString(owner);
    for (std::size_t position = 0; position < owners.size(); ++position) {
        if (owners[position] == bytes) {
            return position;
        }
    }
    std::size_t sum = 0;
    for (const char32_t scalar : owner.toUcs4()) {
        sum += scalar;
    }
    return sum;
}

}  // namespace

ViewStyle::ViewStyle(std::filesystem::path home, StorageLayout layout, QObject* parent)
    : QObject(parent), m_home(NativeText::toQString(home.native())), m_layout(layout) {}

QString ViewStyle::computer() const {
    return m_layout == StorageLayout::macos ? "your Mac" : "this computer";
}

QString ViewStyle::fileViewer() const {
    return m_layout == StorageLayout::macos ? "Finder" : "the file manager";
}

QString ViewStyle::trashNote() const {
    return m_layout == StorageLayout::macos ? "Recoverable. Hidden items in Finder: ⌘⇧."
                                            : "Recoverable from the Trash.";
}

QStringList ViewStyle::supportedOwners() const {
    QStringList owners;
    for (const auto& owner : AIStorageScanner::supportedOwners()) {
        owners.push_back(NativeText::toQString(owner));
    }
    return owners;
}

QString ViewStyle::sizeText(qint64 bytes) {
    return QString::fromStdString(SizeText::bytes(bytes));
}

QString ViewStyle::sizeNumber(qint64 bytes) {
    return sizeText(bytes).section(' ', 0, 0);
}

QString ViewStyle::sizeUnit(qint64 bytes) {
    return sizeText(bytes).section(' ', 1);
}

QString ViewStyle::shortPath(const QString& path, const QString& home) {
    if (path.startsWith(home + '/')) {
        return "~/" + path.mid(home.size() + 1);
    }
    return path;
}

QString ViewStyle::shortTime(const QDateTime& moment) {
    return QLocale::system().toString(moment.time(), QLocale::ShortFormat);
}

QColor ViewStyle::toolColor(const QString& owner) {
    const auto& [red, green, blue] = segmentColors[colorIndex(owner) % segmentColors.size()];
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue));
}

QString ViewStyle::badgeText(const QString& owner) {
    for (const auto& [name, letters] : badges) {
        if (owner == QLatin1String(name)) {
            return letters;
        }
    }
    return {};
}

}  // namespace tallowmere
