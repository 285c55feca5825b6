// The application: documents of the launch (appended, then sorted once), documents handed
// over later (appended at the end, unsorted), and a second launch that hands its files to
// this process and ends. The second launch is this executable started again. A name in
// Shift-JIS comes in all three ways (launch, hand-over, drop) and is written to.

#include <QFileOpenEvent>
#include <QLineEdit>
#include <QLocalSocket>
#include <QPushButton>
#include <QtTest>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Canvas.h"
#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "shell/App.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

static const char* const kSecondLaunch = "TST_APP_SECOND_LAUNCH";

namespace {

const QByteArray kShot = "2012:02:03 04:05:06";
// 写真表.jpg in Shift-JIS: its trail bytes include "^" and a backslash; shown, the bytes that
// are no UTF-8 become U+FFFD.
const QByteArray kSjisName = "\x8e\xca\x90^\x95\\.jpg";
const QString kSjisShown = u"\uFFFD\u0290^\uFFFD\\.jpg"_qs;

// A small picture that a camera's Exif block with all three dates precedes.
QByteArray photo()
{
    QImage picture(16, 12, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    QBuffer jpeg;
    if (!jpeg.open(QIODevice::WriteOnly) || !picture.save(&jpeg, "JPEG"))
        qFatal("cannot make a picture");
    return TiffBuilder::jpeg(camera(true, kShot, kShot, kShot).bytes()).chopped(2) + jpeg.data().mid(2);
}

// This executable started again with arguments as bytes, as a shell passes them (QProcess
// would pass text). Our event loop runs meanwhile: the second launch waits for our answer.
// Its exit code, or -1 when it did not end.
int secondLaunch(QList<QByteArray> args)
{
    QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    std::vector<char*> argv{program.data()};
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    const bool started = posix_spawn(&pid, program.constData(), nullptr, nullptr, argv.data(), environ) == 0;
    int status = 0;
    if (!started || !QTest::qWaitFor([&] { return ::waitpid(pid, &status, WNOHANG) == pid; }, 60000))
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

class TestApp : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    const QString channel = dir.filePath("channel");
    const QByteArray sjisPath = QFile::encodeName(dir.path()) + '/' + kSjisName;
    const QByteArray sjisBytes = photo();
    Window1* w = nullptr;
    QStringList reports;  // what the failure report was given

    QStringList listedNames() const
    {
        QStringList names;
        for (int r = 0; r < w->ListBox1->ListCount(); ++r)
            names << w->ListBox1->Cell(r, 0);
        return names;
    }

private slots:
    void initTestCase()
    {
        qputenv(kSecondLaunch, channel.toUtf8());  // for the second launches, which inherit it
        QVERIFY(QDir::setCurrent(dir.path()));  // and their folder, for relative names
        const std::pair<const char*, int> hoursAgo[] = {{"old", 20}, {"new", 1}, {"middle", 8}, {"後から", 3},
                                                        {"relative", 4}};
        for (const auto& [name, hours] : hoursAgo)
            QVERIFY(writeBytes(dir.filePath(QString::fromUtf8(name)), "", hours));
        QVERIFY(writeBytes(dir.filePath("sjis"), sjisBytes, 12));
        QCOMPARE(::rename(QFile::encodeName(dir.filePath("sjis")).constData(), sjisPath.constData()), 0);
        setFailureReport([this](const QString& action, const QString& reason) { reports << action + ": " + reason; });
        QVERIFY(QFile::link(dir.filePath("loop"), dir.filePath("loop")));
    }

    void cleanupTestCase() { QCOMPARE(::unlink(sjisPath.constData()), 0); }  // beyond Qt's removal

    // Appended in the order of delivery, then sorted once by Timer4 with row 0 selected;
    // what could not be listed has no row and is named in one report after the sort.
    void launch()
    {
        QVERIFY(!Window1::exists());
        const QByteArray folder = QFile::encodeName(dir.path()) + '/';
        QVERIFY(static_cast<App*>(qApp)->start(
            {folder + "old", folder + "gone", folder + "new", sjisPath, folder + "loop", folder + "middle"}, channel));
        w = Window1::instance();
        QCOMPARE(listedNames(), (QStringList{"old", "new", kSjisShown, "middle"}));
        QVERIFY(reports.isEmpty());
        QTRY_COMPARE(w->ListBox1->ListIndex(), 0);
        QCOMPARE(listedNames(), (QStringList{"new", "middle", kSjisShown, "old"}));
        QCOMPARE(reports, QStringList{"list every item: “gone” does not exist.\n“loop” is a loop of symbolic links."});
        reports.clear();
    }

    // Later documents go to the end, unsorted, and leave the selection as it is.
    void later_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QList<QByteArray>>("args");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("file open event") << "event" << QList<QByteArray>{"old"} << QStringList{"old"};
        QTest::newRow("second launch, Shift-JIS, relative and missing names")
            << "launch" << QList<QByteArray>{sjisPath, "後から", "gone", "relative"} << QStringList{kSjisShown, "後から", "relative"};
        QTest::newRow("second launch without files") << "launch" << QList<QByteArray>{} << QStringList{};
        QTest::newRow("second launch past a stranger") << "stranger" << QList<QByteArray>{"new"} << QStringList{"new"};
    }
    void later()
    {
        QFETCH(QString, how);
        QFETCH(QList<QByteArray>, args);
        QFETCH(QStringList, names);
        w->ListBox1->setListIndex(1);
        const QStringList expected = listedNames() + names;
        if (how == "event") {
            QFileOpenEvent e(dir.filePath(QString::fromUtf8(args[0])));
            QCoreApplication::sendEvent(qApp, &e);
        } else {
            // Another process of the user that connects and sends half a message blocks nobody.
            QLocalSocket stranger;
            if (how == "stranger") {
                stranger.connectToServer(channel);
                QVERIFY(stranger.waitForConnected(5000));
                stranger.write(QByteArray("\x00\x00\x00\x10" "abc", 7));
                QVERIFY(stranger.waitForBytesWritten(5000));
            }
            QCOMPARE(secondLaunch(args), 0);  // handed over, didn't become a second copy
        }
        QTRY_COMPARE(listedNames(), expected);
        QCOMPARE(w->ListBox1->ListIndex(), 1);
        QCOMPARE(reports, args.contains("gone") ? QStringList{"list every item: “gone” does not exist."} : QStringList{});
        reports.clear();
    }

    // Dropped by its URL's percent-encoded bytes, shown, and its dates changed in place:
    // the file is the copy with the three dates one day later, and nothing else.
    void dropAndExecute()
    {
        QMimeData mime;
        mime.setUrls({QUrl::fromEncoded("file://" + sjisPath.toPercentEncoding("/"))});
        const QPoint at = w->centralWidget()->mapTo(w, QPoint(300, 100));
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        for (QEvent* e : std::initializer_list<QEvent*>{&enter, &dropped})
            QCoreApplication::sendEvent(w->windowHandle(), e);
        QCOMPARE(listedNames(), QStringList{kSjisShown});
        QTRY_VERIFY(!w->Canvas1->Backdrop().isNull());  // its picture in the preview
        setMsgBoxAnswer([](const QString&, int, const QString&, const QString&) { return 1; });
        w->AddValue(2)->setText("1");
        w->AimValue(0)->setText("2012");
        w->ExecuteBtn->click();
        setMsgBoxAnswer({});
        const QByteArray later = "2012:02:04 04:05:06";
        QCOMPARE(FolderItem(sjisPath).OpenAsBinaryFile(false)->Read(1 << 16), QByteArray(sjisBytes).replace(kShot, later));
        QCOMPARE(FolderItem(sjisPath).ModificationDate().SQLDateTime(), "2012-02-04 04:05:06");
        QVERIFY(reports.isEmpty());
    }
};

int main(int argc, char** argv)
{
    App app(argc, argv);
    if (qEnvironmentVariableIsSet(kSecondLaunch)) {
        // Answers 0 when it handed its files over, 3 when it became the running copy.
        return app.start(app.launchDocuments(), qEnvironmentVariable(kSecondLaunch)) ? 3 : 0;
    }
    TestApp test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
