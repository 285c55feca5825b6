// Thousands of broken files, made from good ones by a fixed sequence of mutations: every one
// adds exactly one row, and the row stays consistent. Run under AddressSanitizer, this is
// also the check that no read or write leaves its buffer.
#include <QtTest>

#include <QRandomGenerator>

#include "platform/FolderItem.h"
#include "platform/Listbox.h"
#include "platform/Text.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

#include <memory>

namespace {

// A good file of each kind the reader meets, with every branch of the entry types in it.
QList<QByteArray> seeds()
{
    QList<QByteArray> out;
    for (bool le : {false, true}) {
        TiffBuilder t(le);
        const int ifd0 = t.directory(), exif = t.directory(), ifd1 = t.directory();
        t.entry(ifd0, 274, 3, 1, le ? 6 : 6 << 16);
        t.ascii(ifd0, 271, "Maker");
        t.entryData(ifd0, 282, 5, 1, QByteArray("\0\0\0\x48\0\0\0\x01", 8));
        t.ascii(ifd0, 306, "2001:02:03 04:05:06");
        t.link(ifd0, 34665, exif);
        t.next(ifd0, ifd1);
        t.entry(exif, 33434, 11, 1, 0x3F800000);
        t.entryData(exif, 37500, 12, 1, QByteArray(8, '\x40'));
        t.ascii(exif, 36867, "2002:03:04 05:06:07");
        t.ascii(exif, 36868, "2003:04:05 06:07:08");
        t.entry(exif, 37121, 7, 4, 0x01020300);
        t.entry(ifd1, 259, 3, 1, le ? 6 : 6 << 16);
        t.entry(ifd1, 513, 4, 1, 0x200);
        out << t.bytes() << TiffBuilder::jpeg(t.bytes());
    }
    return out;
}

const quint8 kInteresting[] = {0x00, 0x01, 0x02, 0x7F, 0x80, 0xFF, 0x2A, 0x4D, 0x49, 0x0C};

QByteArray mutate(QByteArray file, QRandomGenerator& random)
{
    const int edits = 1 + random.bounded(8);
    for (int e = 0; e < edits && !file.isEmpty(); ++e) {
        const qint64 at = random.bounded(int(file.size()));
        switch (random.bounded(10)) {
        case 0:
            file.truncate(at);
            break;
        case 1:
            file.insert(at, random.bounded(2) ? QByteArray("MM\0*", 4) : QByteArray("II*\0", 4));
            break;
        case 2:
        case 3:
            file[at] = char(kInteresting[random.bounded(int(sizeof kInteresting))]);
            break;
        default:
            file[at] = char(random.bounded(256));
            break;
        }
    }
    return file;
}

// What is wrong with the row of a file, or an empty text.
QString inconsistency(const Window1& w, int row)
{
    if (w.ListBox1->ListCount() != row + 1 || w.curRow != row)
        return QStringLiteral("not one new row at the end");
    if (w.ListBox1->Cell(row, 0) != QStringLiteral("mutant.jpg"))
        return QStringLiteral("name");
    for (int column = 3; column <= 5; ++column) {
        const QString cell = w.ListBox1->Cell(row, column);
        const QVariant tag = w.ListBox1->CellTag(row, column);
        const bool marker = sameText(cell, kNoExif);
        if (marker == tag.isValid())
            return QStringLiteral("column %1: marker and tag").arg(column);
        if (!marker && (tag.typeId() != QMetaType::Double || cell.size() > 254))
            return QStringLiteral("column %1: date text or tag").arg(column);
        if (marker && w.ListBox1->CellCheck(row, column))
            return QStringLiteral("column %1: ticked marker").arg(column);
    }
    const QVariant turns = w.ListBox1->CellTag(row, 6);
    if (turns.isValid() && (turns.typeId() != QMetaType::LongLong || turns.toLongLong() < 0 || turns.toLongLong() > 3))
        return QStringLiteral("orientation code");
    return {};
}

}  // namespace

class TestExifMutation : public QObject {
    Q_OBJECT

private slots:
    void brokenFilesKeepTheTableConsistent()
    {
        QTemporaryDir tmp;
        Window1 w;
        const QList<QByteArray> good = seeds();
        QRandomGenerator random(20240611);
        const QString path = tmp.filePath(QStringLiteral("mutant.jpg"));

        for (int i = 0; i < 5000; ++i) {
            const QByteArray file = mutate(good[random.bounded(int(good.size()))], random);
            QVERIFY(writeBytes(path, file));
            w.addFileToTable(FolderItem(path));
            const QString problem = inconsistency(w, i);
            if (!problem.isEmpty())
                QFAIL(qPrintable(QStringLiteral("file %1 (%2): %3").arg(i).arg(QString::fromLatin1(file.toHex()), problem)));
        }
    }
};

QTEST_MAIN(TestExifMutation)
#include "tst_exifmutation.moc"
