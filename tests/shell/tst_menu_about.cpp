// The menu bar (items, shortcuts, order, editing on the focused field, Quit) and the About
// window (shown modally, hidden by a press, shown again as the same window).

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QtTest>

#include "shell/AboutWindow.h"
#include "shell/App.h"
#include "shell/Globals.h"
#include "shell/MenuBar1.h"
#include "shell/Window1.h"

class TestMenuAbout : public QObject {
    Q_OBJECT

    // Runs About and, once its window is up, `whileShown` on it. A window that doesn't go
    // away is let go after 10 s, and the run counts as failed.
    template <class F>
    static bool runAbout(Window1& w, F whileShown)
    {
        bool ran = false, stuck = false;
        QTimer onShow, letGo;  // both end with this call
        onShow.setSingleShot(true);
        onShow.callOnTimeout([&] { ran = true, whileShown(AboutWindow::instance()); });
        onShow.start(0);
        letGo.callOnTimeout([&] { stuck = true, AboutWindow::instance()->done(0); });
        letGo.start(10000);
        return !w._AppleAbout_Action() && ran && !stuck;
    }

private slots:
    void items_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QKeySequence>("shortcut");
        QTest::addColumn<int>("position");  // in the Edit menu; -1 on the bar
        QTest::newRow("FileQuit") << "FileQuit" << -1 << Globals::kEditQuit() << QKeySequence("Ctrl+Q") << -1;
        QTest::newRow("EditUndo") << "EditUndo" << -1 << Globals::kEditUndo() << QKeySequence("Ctrl+Z") << 0;
        QTest::newRow("EditRedo") << "EditRedo" << -1 << Globals::kEditRedo() << QKeySequence("Ctrl+Shift+Z") << 1;
        QTest::newRow("first separator") << "UntitledSeparator" << 1 << QString() << QKeySequence() << 2;
        QTest::newRow("EditCut") << "EditCut" << -1 << Globals::kEditCut() << QKeySequence("Ctrl+X") << 3;
        QTest::newRow("EditCopy") << "EditCopy" << -1 << Globals::kEditCopy() << QKeySequence("Ctrl+C") << 4;
        QTest::newRow("EditPaste") << "EditPaste" << -1 << Globals::kEditPaste() << QKeySequence("Ctrl+V") << 5;
        QTest::newRow("EditClear") << "EditClear" << -1 << Globals::kEditClear() << QKeySequence() << 6;
        QTest::newRow("second separator") << "UntitledSeparator" << 2 << QString() << QKeySequence() << 7;
        QTest::newRow("AppleAbout") << "AppleAbout" << -1 << Globals::kAppAbout() << QKeySequence() << 8;
    }
    void items()
    {
        QFETCH(QString, name);
        QFETCH(int, index);
        QFETCH(QString, caption);
        QFETCH(QKeySequence, shortcut);
        QFETCH(int, position);
        Window1 w;
        auto* bar = qobject_cast<MenuBar1*>(w.menuBar());
        QVERIFY(bar);
        QAction* item = bar->lookup(name, index);
        QVERIFY(item);
        QCOMPARE(item->text(), caption);
        QCOMPARE(item->shortcut(), shortcut);
        QCOMPARE(item->isSeparator(), index > 0);
        const QList<QAction*> menu = bar->EditMenu()->actions();
        QCOMPARE(menu.size(), 9);
        if (position >= 0)
            QCOMPARE(menu.indexOf(item), position);
        else
            QCOMPARE(bar->actions().indexOf(item), 0);
        QCOMPARE(bar->actions().value(1), bar->EditMenu()->menuAction());
        QCOMPARE(bar->EditMenu()->title(), Globals::kEditMenu());
        const QAction::MenuRole role = name == "FileQuit"  ? QAction::QuitRole
                                       : name == "AppleAbout" ? QAction::AboutRole
                                                              : QAction::TextHeuristicRole;
        QCOMPARE(item->menuRole(), role);
    }

    // The Edit items act on the focused add value, whose own change signal reports it.
    void editing_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("clipboard");
        QTest::newRow("copy") << QStringList{"EditCopy"} << "12" << "12";
        QTest::newRow("cut") << QStringList{"EditCut"} << "" << "12";
        QTest::newRow("paste over the selection") << QStringList{"EditPaste"} << "365" << "365";
        QTest::newRow("clear") << QStringList{"EditClear"} << "" << "365";
        QTest::newRow("undo the paste, redo it") << QStringList{"EditPaste", "EditUndo", "EditRedo"} << "365" << "365";
    }
    void editing()
    {
        QFETCH(QStringList, steps);
        QFETCH(QString, text);
        QFETCH(QString, clipboard);
        Window1 w;
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QLineEdit* days = w.AddValue(2);
        days->setFocus();
        days->setText(QStringLiteral("12"));
        days->selectAll();
        QApplication::clipboard()->setText(QStringLiteral("365"));
        QSignalSpy changes(days, &QLineEdit::textChanged);
        auto* bar = qobject_cast<MenuBar1*>(w.menuBar());
        for (const QString& step : steps)
            bar->lookup(step)->trigger();
        QCOMPARE(days->text(), text);
        QCOMPARE(QApplication::clipboard()->text(), clipboard);
        QCOMPARE(changes.isEmpty(), text == QStringLiteral("12"));
    }

    void quitEndsTheEventLoop()
    {
        Window1 w;
        auto* bar = qobject_cast<MenuBar1*>(w.menuBar());
        QTimer::singleShot(0, bar->lookup(QStringLiteral("FileQuit")), &QAction::trigger);
        QTimer::singleShot(10000, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }

    void aboutWindow()
    {
        Window1 w;
        AboutWindow* first = nullptr;
        auto firstLook = [&](AboutWindow* a) {
            first = a;
            QVERIFY(a->isVisible() && a->isModal());
            QCOMPARE(a->VerString->text(), QStringLiteral("Ver.") + App::ShortVersion());
            a->AppName->setText(QStringLiteral("kept"));  // an open handler run again would undo this
            QTest::mouseClick(a, Qt::LeftButton, {}, QPoint(5, 5));
        };
        QVERIFY(runAbout(w, firstLook));
        QVERIFY(first && !first->isVisible());

        // Presses on the controls that keep none reach the window too.
        for (const QPoint at : {QPoint(150, 70), QPoint(150, 150), QPoint(150, 170), QPoint(150, 290)}) {
            auto pressAt = [&](AboutWindow* a) {
                QCOMPARE(a, first);
                QCOMPARE(a->AppName->text(), QStringLiteral("kept"));
                QWidget* target = a->childAt(at) ? a->childAt(at) : a;
                QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(a, at));
            };
            QVERIFY2(runAbout(w, pressAt), qPrintable(QStringLiteral("press at %1,%2").arg(at.x()).arg(at.y())));
            QVERIFY(!first->isVisible());
        }

        // The close button ends it; the next About makes another.
        QPointer<AboutWindow> closed = first;
        auto closeIt = [](AboutWindow* a) { a->close(); };
        QVERIFY(runAbout(w, closeIt));
        QTRY_VERIFY(closed.isNull());
        auto freshLook = [](AboutWindow* a) {
            QCOMPARE(a->AppName->text(), Globals::kAppName());
            a->hide();
        };
        QVERIFY(runAbout(w, freshLook));
    }
};

QTEST_MAIN(TestMenuAbout)
#include "tst_menu_about.moc"
