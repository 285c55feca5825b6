#include "platform/widgets/FileChooser.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

FileChooser& chooser()
{
    static FileChooser c;
    return c;
}

// Qt's own dialog takes only files in this mode: Open on a folder goes into it. Once its
// widgets stand, its Open takes what is selected in the list as it is, folders included,
// when every item is there; a double click, or a folder's name typed, still goes into the
// folder. A desktop's dialog has no such widgets and is left alone.
void takeFoldersToo(QFileDialog& dialog)
{
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (!buttons)
        return;
    QObject::disconnect(buttons, &QDialogButtonBox::accepted, &dialog, nullptr);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [&dialog] {
        QDialog& asDialog = dialog;  // QFileDialog keeps these two protected
        const QStringList chosen = dialog.selectedFiles();
        // A folder's name typed and confirmed still goes into it.
        const auto* typed = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        const QString name = typed ? typed->text().trimmed() : QString();
        const bool typedFolder = !name.isEmpty() && QFileInfo(dialog.directory().absoluteFilePath(name)).isDir();
        if (!typedFolder && !chosen.isEmpty() &&
            std::all_of(chosen.begin(), chosen.end(), [](const QString& p) { return QFileInfo::exists(p); }))
            asDialog.done(QDialog::Accepted);
        else
            asDialog.accept();  // Qt's own answer to a name that is not there
    });
}

}  // namespace

void setFileChooser(FileChooser c) { chooser() = std::move(c); }

QList<FolderItem> chooseFiles(QWidget* parent, const QString& title, const QStringList& nameFilters)
{
    if (chooser())
        return chooser()(title, nameFilters);

    QFileDialog dialog(parent, title);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setNameFilters(nameFilters);
    QTimer::singleShot(0, &dialog, [&dialog] { takeFoldersToo(dialog); });
    if (dialog.exec() != QDialog::Accepted)
        return {};
    QList<FolderItem> items;
    for (const QString& path : dialog.selectedFiles())
        items << FolderItem(path);
    return items;
}
