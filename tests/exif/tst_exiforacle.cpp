// JPEGs written by exiftool, read by the program: the three date texts must be those that
// exiftool reports, each tag must point at the first byte of its date in the file, and the
// orientation code must follow exiftool's orientation value.
#include <QtTest>

#include <QProcess>
#include <QStandardPaths>

#include "platform/FolderItem.h"
#include "platform/Listbox.h"
#include "shell/Window1.h"

#include <memory>

class TestExifOracle : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    std::unique_ptr<Window1> w;

    static QByteArray exiftool(const QStringList& args)
    {
        QProcess p;
        p.start(QStringLiteral("exiftool"), args);
        if (!p.waitForFinished(60000) || p.exitCode() != 0)
            qFatal("exiftool %s failed: %s", qPrintable(args.join(' ')), p.readAllStandardError().constData());
        return p.readAllStandardOutput();
    }

private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("exiftool")).isEmpty())
            QSKIP("exiftool is not installed");
        QImage picture(96, 64, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(tmp.filePath("base.jpg"), "JPEG"));
        QVERIFY(picture.scaled(24, 16).save(tmp.filePath("thumb.jpg"), "JPEG"));
        w = std::make_unique<Window1>();
    }

    void sameAsExiftool_data()
    {
        QTest::addColumn<QStringList>("writes");
        const QString thumb = QStringLiteral("-ThumbnailImage<=") + tmp.filePath("thumb.jpg");
        const QStringList all{"-IFD0:ModifyDate=2001:02:03 04:05:06", "-ExifIFD:DateTimeOriginal=2002:03:04 05:06:07",
                              "-ExifIFD:CreateDate=2003:04:05 06:07:08"};
        QTest::newRow("MM, orientation 6") << QStringList{"-ExifByteOrder=MM", "-IFD0:Orientation#=6", thumb} + all;
        QTest::newRow("II, orientation 3") << QStringList{"-ExifByteOrder=II", "-IFD0:Orientation#=3", thumb} + all;
        QTest::newRow("MM, mirrored orientation 5") << QStringList{"-ExifByteOrder=MM", "-IFD0:Orientation#=5", thumb} + all;
        QTest::newRow("II, orientation 8, no modify date")
            << QStringList{"-ExifByteOrder=II", "-IFD0:Orientation#=8", thumb, "-ExifIFD:DateTimeOriginal=1999:12:31 23:59:59",
                           "-ExifIFD:CreateDate=2000:01:01 00:00:00"};
        QTest::newRow("MM, shooting date only, no thumbnail")
            << QStringList{"-ExifByteOrder=MM", "-ExifIFD:DateTimeOriginal=2024:02:29 12:00:00"};
    }

    void sameAsExiftool()
    {
        QFETCH(QStringList, writes);
        const QString path = tmp.filePath(QStringLiteral("%1.jpg").arg(QTest::currentDataTag()).replace(' ', '_'));
        QFile::remove(path);
        QVERIFY(QFile::copy(tmp.filePath("base.jpg"), path));
        exiftool(QStringList{"-q", "-overwrite_original"} + writes + QStringList{path});
        const QList<QByteArray> told = exiftool({"-s3", "-f", "-IFD0:ModifyDate", "-ExifIFD:DateTimeOriginal",
                                                 "-ExifIFD:CreateDate", "-IFD0:Orientation#", path})
                                           .trimmed()
                                           .split('\n');
        QCOMPARE(told.size(), 4);

        w->addFileToTable(FolderItem(path));
        const int row = w->ListBox1->ListCount() - 1;
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        for (int column = 3; column <= 5; ++column) {
            const QByteArray expected = told[column - 3];
            const QString cell = w->ListBox1->Cell(row, column);
            const QVariant tag = w->ListBox1->CellTag(row, column);
            if (expected == "-") {
                QCOMPARE(cell, kNoExif);
                QVERIFY(!tag.isValid());
                continue;
            }
            QCOMPARE(cell, QString::fromLatin1(expected));
            QCOMPARE(tag.typeId(), int(QMetaType::Double));
            QCOMPARE(content.mid(qint64(tag.toDouble()), 20), expected + '\0');
        }
        const int codes[] = {0, 0, 0, 2, 2, 3, 1, 1, 3};
        const int orientation = told[3] == "-" ? -1 : told[3].toInt();
        QCOMPARE(w->ListBox1->CellTag(row, 6).isValid(), orientation >= 0);
        QCOMPARE(w->ListBox1->CellTagAt(row, 6), qint64(orientation >= 0 ? codes[orientation] : 0));
    }
};

QTEST_MAIN(TestExifOracle)
#include "tst_exiforacle.moc"
