// Run History: the kept runs, newest first, in a modal table.

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QTableWidget>
#include <QVBoxLayout>

#include "journal/Journal.h"
#include "platform/base/TextId.h"
#include "shell/Window1.h"

namespace {

QString stateOf(const JournalRun& run)
{
    switch (run.state) {
    case JournalRun::Done: return textById("Journal.stateDone", "done");
    case JournalRun::Undone: return textById("Journal.stateUndone", "undone");
    case JournalRun::Interrupted: break;
    }
    return textById("Journal.stateInterrupted", "interrupted");
}

}  // namespace

QDialog* Window1::makeRunHistory()
{
    auto* dialog = new QDialog(this);
    dialog->setObjectName(QStringLiteral("RunHistory"));
    dialog->setWindowTitle(textById("Journal.historyTitle", "Run History"));
    auto* table = new QTableWidget(dialog);
    table->setObjectName(QStringLiteral("RunHistoryTable"));
    table->setColumnCount(5);
    table->setHorizontalHeaderLabels({textById("Journal.when", "When"), textById("Journal.files", "Files"),
                                      textById("Journal.dates", "Dates"), textById("Journal.offset", "Offset"),
                                      textById("Journal.state", "State")});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    const QLocale l;
    const std::vector<JournalEntry> runs = Journal::runs();
    table->setRowCount(int(runs.size()));
    for (int row = 0; row < int(runs.size()); ++row) {
        const JournalEntry& e = runs[size_t(row)];
        QStringList cells;
        if (e.run)
            cells << l.toString(QDateTime::fromMSecsSinceEpoch(e.run->started), QLocale::ShortFormat)
                  << l.toString(e.run->fileCount) << l.toString(e.run->dates) << e.run->offset
                  << stateOf(*e.run);
        else
            cells << QFileInfo(e.fileName).fileName() << QString() << QString() << QString()
                  << textById("Journal.stateUnreadable", "cannot be read: %1").arg(e.why);
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = new QTableWidgetItem(cells[c]);
            if (c == 1 || c == 2)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, c, item);
        }
    }
    table->resizeColumnsToContents();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(table);
    layout->addWidget(buttons);
    dialog->resize(640, 360);
    return dialog;
}

void Window1::FileRunHistory_Action()
{
    QDialog* dialog = makeRunHistory();
    dialog->exec();
    delete dialog;
}
