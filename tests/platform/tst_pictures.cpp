// Whether a file gives a picture, from its header: every format the plugins read, whole,
// cut short, empty or under another name; and for the formats of phones and cameras, also
// what the preview makes of them.

#include "platform/base/Exceptions.h"
#include "platform/files/FolderItem.h"
#include "platform/pictures/PictureProbe.h"
#include "platform/pictures/ScaledPicture.h"
#include "support/MadeFiles.h"
#include "support/TiffBuilder.h"

#include <QImageWriter>
#include <QtTest>

#include <map>
#include <tuple>

#include <sys/stat.h>

class TestPictures : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void fromHeaders_data()
    {
        QTest::addColumn<QByteArray>("bytes");  // or what the item is: <folder>, <fifo>
        QTest::addColumn<bool>("picture");
        QImage image(480, 320, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb(x * 7 % 256, y * 13 % 256, (x * y) % 256));
        // TIFF keeps its directory after the picture: cut short, it loses its header.
        const std::map<QByteArray, bool> halfStaysPicture{{"JPEG", true}, {"PNG", true}, {"TIFF", false},
                                                          {"BMP", true}, {"WEBP", true}};
        for (const auto& [format, half] : halfStaysPicture) {
            QByteArray bytes;
            QBuffer buffer(&bytes);
            QVERIFY(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format.constData()));
            QTest::addRow("%s.%s", format.constData(), format.constData()) << bytes << true;
            // The header decides: the picture data after it may be cut off or garbled.
            QTest::addRow("%s cut in half", format.constData()) << bytes.left(bytes.size() / 2) << half;
            QTest::addRow("%s cut to 12 bytes", format.constData()) << bytes.left(12) << false;
            QTest::addRow("%s named .txt", format.constData()) << bytes << true;
            if (format != "JPEG")
                continue;
            const qsizetype frame = bytes.indexOf("\xff\xc0"), scan = bytes.indexOf("\xff\xda");
            QTest::newRow("JPEG with a fill byte") << QByteArray(bytes).insert(frame, '\xff') << true;
            QTest::newRow("JPEG of width 0") << QByteArray(bytes).replace(frame + 7, 2, QByteArray(2, 0)) << false;
            QTest::newRow("JPEG cut before its scan") << bytes.left(scan) << false;
        }
        // GIF, which is read but not written: a screen and one image 48 by 32, no data.
        const QByteArray gif = QByteArray::fromHex("474946383961" "30002000000000" "2c0000000030002000" "0002");
        QTest::newRow("GIF without its data.gif") << gif << true;
        QTest::newRow("GIF of an image 0 wide") << QByteArray(gif).replace(6, 2, QByteArray(2, 0)).replace(18, 2, QByteArray(2, 0)) << false;
        // Raw files of their own layouts (CR3, RAF, ORF, RW2) by their signatures; HEIF by
        // its whole ftyp box, and a box after it.
        const QByteArray rest(200, 'z'), heic = QByteArray::fromHex("00000018667479706865696300000000") + "mif1heic";
        const std::map<QByteArray, QByteArray> raws{{"cr3", QByteArray::fromHex("00000018667479706372782000000001")},
                                                    {"raf", "FUJIFILMCCD-RAW "}, {"orf", "IIRO"}, {"rw2", QByteArray("IIU\0", 4)}};
        for (const auto& [name, start] : raws)
            QTest::addRow("raw.%s", name.constData()) << start + rest << true;
        QTest::newRow("heic cut in its ftyp box") << heic.left(20) + rest.left(4) << false;
        QTest::newRow("empty.jpg") << QByteArray() << false;
        QTest::newRow("text.png") << QByteArray("just some words\n") << false;
        QTest::newRow("folder.jpg") << QByteArray("<folder>") << false;
        QTest::newRow("fifo.jpg") << QByteArray("<fifo>") << false;  // would wait for a writer
    }
    void fromHeaders()
    {
        QFETCH(QByteArray, bytes);
        const QString path = dir_.filePath(QTest::currentDataTag());
        if (bytes == "<folder>") {
            QVERIFY(QDir().mkpath(path));
        } else if (bytes == "<fifo>") {
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        } else {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        }
        QTEST(givesPicture(FolderItem(path)), "picture");
        QVERIFY_THROWS_EXCEPTION(NilObjectException, givesPicture(FolderItem()));
    }

    // HEIC and AVIF made by libheif's encoder, a DNG built here, and real files: the size
    // that the preview gives, what it decodes for a pane of 200 by 200 (a HEIF thumbnail
    // that covers the picture fitted into it, else that picture; a raw file's preview at a
    // reduced scale) and the filter's answer, which never counts a film.
    void phonesAndCameras_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QSize>("full");  // invalid: no picture in the preview
        QTest::addColumn<int>("decodedWidth");
        QTest::addColumn<bool>("picture");
        QImage green(1600, 1200, QImage::Format_RGB32);
        green.fill(Qt::darkGreen);
        QByteArray jpeg;
        QBuffer buffer(&jpeg);
        QVERIFY(buffer.open(QIODevice::WriteOnly) && green.save(&buffer, "JPEG"));
        const std::map<QString, QByteArray> made{{"thumb.heic", heifEncoded(green, {"-q", "60", "-t", "320"})},
                                                 {"small.heic", heifEncoded(green, {"-q", "60", "-t", "100"})},
                                                 {"a.avif", heifEncoded(green, {"-A", "-q", "60"})},
                                                 {"a.dng", dngWithPreview(jpeg, green.size())}};
        for (const auto& [name, bytes] : made)
            QVERIFY(!bytes.isEmpty() && writeBytes(dir_.filePath(name), bytes));
        const QDir samples(VELKARO_SAMPLES);  // the shared real files
        for (const auto& [row, file, full, decodedWidth] :
             {std::tuple{"heic, its thumbnail covers", dir_.filePath("thumb.heic"), QSize(1600, 1200), 320},
              {"heic, its thumbnail too small", dir_.filePath("small.heic"), QSize(1600, 1200), 200},
              {"avif", dir_.filePath("a.avif"), QSize(1600, 1200), 200},
              {"dng", dir_.filePath("a.dng"), QSize(1600, 1200), 200},
              {"real iphone heic", samples.filePath("IMG_3578.heic"), QSize(4032, 3024), 320},
              {"real avif", samples.filePath("avif_exif_xmp.avif"), QSize(120, 120), 120},
              {"real nef that is a jpeg", samples.filePath("Nikon_issue_247-2.nef"), QSize(2000, 3008), 250},
              {"real quicktime film", samples.filePath("sample_640x360.mov"), QSize(), 0},
              {"real mp4 film", samples.filePath("ftyp3gp5.mp4"), QSize(), 0}})
            if (QFile::exists(file))
                QTest::newRow(row) << file << full << decodedWidth << full.isValid();
    }
    void phonesAndCameras()
    {
        QFETCH(QString, path);
        QFETCH(QSize, full);
        const ScaledPicture p = openScaledPicture(path, QSize(200, 200));
        QCOMPARE(p.isNull() ? QSize() : p.fullSize, full);
        if (full.isValid())
            QTEST(p.image.width(), "decodedWidth");
        QTEST(givesPicture(FolderItem(path)), "picture");
    }
};

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
