#include "FolderDialogChooser.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QSettings>
#include <stdexcept>

#include "NativeText.h"
#include "persistence/StoreSettings.h"

namespace tallowmere {

namespace {

const char* const message =
    "Choose an AI tool’s storage folder. Tallowmere measures sizes without opening conversation "
    "contents.";

// The dialog keeps its history and size in Qt's own settings file; that goes beside ours rather
// than loose in the user's settings folder.
void keepDialogSettingsBesideOurs() {
    try {
        const auto folder = StoreSettingsFile::location().parent_path();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           NativeText::toQString(folder.native()));
    } catch (const std::runtime_error&) {
        // Without a settings folder, Qt keeps its default place.
    }
}

}  // namespace

std::optional<std::string> FolderDialogChooser::chooseFolder() {
    keepDialogSettingsBesideOurs();
    QFileDialog dialog(nullptr, "Track an AI Folder", QDir::homePath());
    // The desktop's own dialogs cannot show hidden folders on request, and most AI tools keep
    // their storage in one.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setOption(QFileDialog::ReadOnly);  // no "Create New Folder"
    dialog.setFilter(QDir::AllDirs | QDir::Hidden | QDir::NoDotAndDotDot);
    dialog.setLabelText(QFileDialog::Accept, "Track storage");
    if (auto* grid = qobject_cast<QGridLayout*>(dialog.layout())) {
        auto* label = new QLabel(message, &dialog);
        label->setWordWrap(true);
        grid->addWidget(label, grid->rowCount(), 0, 1, grid->columnCount());
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return QFile::encodeName(dialog.selectedFiles().front()).toStdString();
}

}  // namespace tallowmere
