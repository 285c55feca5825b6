#pragma once
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

#include "platform/files/FolderItem.h"

class QWidget;

// The desktop's chooser of files to open: several at once, the name filters offered in the
// order given, folders as well as files. It is the desktop's own dialog (through the
// portal where the desktop has one) where Qt finds one; Qt's own dialog otherwise, in
// which a folder chosen with Open is taken as it is and a double click goes into it.
// Gives the chosen items, none when the user cancels.
QList<FolderItem> chooseFiles(QWidget* parent, const QString& title, const QStringList& nameFilters);

// Tests choose in place of a person: while a chooser is set, chooseFiles shows nothing and
// gives what it gives. An empty chooser restores the dialog.
using FileChooser = std::function<QList<FolderItem>(const QString& title, const QStringList& nameFilters)>;
void setFileChooser(FileChooser chooser);
