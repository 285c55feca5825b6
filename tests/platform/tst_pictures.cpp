// Whether a file gives a picture, from its header: every format the plugins read, whole,
// cut short, empty or under another name.

#include "platform/Exceptions.h"
#include "platform/FolderItem.h"
#include "platform/PictureProbe.h"

#include <QImageWriter>
#include <QtTest>

#include <map>

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
};

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
