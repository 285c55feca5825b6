// The shell: the main window as it is made (where its controls stand, at the design size
// and resized, in which parent, tab order and state), its menu bar with editing on the
// focused field, the About window, and the text constants with the Japanese table.

#include <QtTest>
#include <QtWidgets>

#include "platform/app/HandlerGuard.h"
#include "shell/AboutWindow.h"
#include "shell/App.h"
#include "shell/Globals.h"
#include "shell/MenuBar1.h"
#include "shell/Translations.h"
#include "shell/Window1.h"

namespace {

#define K(name) {#name, Globals::name}
const std::pair<const char*, QString (*)()> kAll[] = {
    K(kEditUndo),    K(kEditRedo),     K(kAppAbout),      K(kWinTitle),      K(kEditQuit),     K(kEditPaste),
    K(kEditMenu),    K(kEditCut),      K(kEditCopy),      K(kEditClear),     K(kAppName),      K(kAboutText),
    K(kHowToClose),  K(kUsageText),    K(kBaseGroupCap),  K(kBaseKind1),     K(kBaseKind2),    K(kBaseKind3),
    K(kBaseKind4),   K(kBaseKind5),    K(kExecuteBtnCap), K(kAddGroupCap),   K(kClearBtnCap),  K(kAddValueCheck),
    K(kTxY),         K(kTxM),          K(kTxD),           K(kTxHour),        K(kTxMin),        K(kTxSec),
    K(kAimGroupCap), K(kListHeaderInitValue), K(kListInitValue), K(kOnlyPictCheck),
};
#undef K

QStringList texts()
{
    QStringList all;
    for (const auto& [name, text] : kAll)
        all << text();
    return all;
}

// A table that holds a text for every key: the key itself behind a mark.
class EchoTable : public QTranslator {
    QString translate(const char*, const char* key, const char*, int) const override { return '=' + QString(key); }
    bool isEmpty() const override { return false; }
};

// "AimValue(3)" for a member of an array, the plain name otherwise.
QString nameOf(const QObject* c)
{
    const QVariant index = c->property("Index");
    return c->objectName() + (index.isValid() ? QString("(%1)").arg(index.toInt()) : QString());
}

// Runs About and, once its window is up, `whileShown` on it. A window still up after 10 s
// is let go, and the run counts as failed.
template <class F>
bool runAbout(Window1* w, F whileShown)
{
    QTimer onShow, letGo;  // each stops itself when it fires
    onShow.callOnTimeout([&] { onShow.stop(), whileShown(AboutWindow::instance()); });
    letGo.callOnTimeout([&] { letGo.stop(), AboutWindow::instance()->done(0); });
    onShow.start(0), letGo.start(10000);
    return !w->_AppleAbout_Action() && !onShow.isActive() && letGo.isActive();
}

}  // namespace

class TestShell : public QObject {
    Q_OBJECT
    Window1* w = nullptr;
    const QStringList original = texts();

    QWidget* control(const QString& name) const
    {
        for (QWidget* c : w->centralWidget()->findChildren<QWidget*>())
            if (nameOf(c) == name)
                return c;
        return nullptr;
    }

    void resizeContent(QSize size)
    {
        w->resize(size + w->size() - w->centralWidget()->size());
        QTRY_COMPARE(w->centralWidget()->size(), size.expandedTo(QSize(680, 380)));
    }

private slots:
    // The window as it opens. (One window however often asked for, and Timer4's sort after
    // the opening, are the application's test; the base that the opening chooses is the
    // scheduled value's; the design size is where the controls stand, below.)
    void initTestCase()
    {
        w = Window1::instance();
        QVERIFY(QTest::qWaitForWindowActive(w));
        QVERIFY(!(w->windowFlags() & (Qt::WindowMaximizeButtonHint | Qt::WindowMinimizeButtonHint)));
        QVERIFY(!w->AddValue(0)->isEnabled() && !w->AddValue(1)->isEnabled() && w->AddValue(2)->isEnabled());
        QVERIFY(!control("Winback")->isVisible() && !w->FileNameTag->isVisible());
        const QFontMetrics tag = w->FileNameTag->fontMetrics();
        QCOMPARE(tag.horizontalAdvance('i'), tag.horizontalAdvance('W'));  // a fixed-pitch face
        // A disabled add value looks as the style draws any disabled field.
        QLineEdit plain(QStringLiteral("0"));
        plain.setFont(w->AddValue(0)->font());
        plain.setAlignment(w->AddValue(0)->alignment());
        plain.resize(w->AddValue(0)->size());
        plain.setEnabled(false);
        const auto look = [](QWidget* f) { return f->grab().toImage().convertToFormat(QImage::Format_RGB32); };
        QCOMPARE(look(w->AddValue(0)), look(&plain));
    }

    // In content coordinates, also inside a group; "grown" with the content at 1000 by 700.
    void places_data()
    {
        QTest::addColumn<QString>("parent");  // empty: the content area
        QTest::addColumn<QRect>("design");
        QTest::addColumn<QRect>("grown");
        QTest::newRow("ListBox1") << "" << QRect(20, 268, 830, 212) << QRect(20, 268, 960, 392);
        QTest::newRow("OnlyPicture") << "" << QRect(337, 486, 500, 20) << QRect(467, 666, 500, 20);
        QTest::newRow("Canvas1") << "ImageBack" << QRect(27, 24, 200, 200) << QRect(27, 24, 200, 200);
        QTest::newRow("TextArea1") << "" << QRect(245, 20, 180, 209) << QRect(245, 20, 310, 209);
        QTest::newRow("AddValue(2)") << "AddGroup" << QRect(580, 142, 50, 22) << QRect(710, 142, 50, 22);
        QTest::newRow("ClearBtn") << "" << QRect(545, 118, 50, 14) << QRect(675, 118, 50, 14);
    }
    void places()
    {
        QFETCH(QString, parent);
        QWidget* c = control(QTest::currentDataTag());
        QVERIFY(c);
        QCOMPARE(c->parentWidget(), parent.isEmpty() ? w->centralWidget() : control(parent));
        const auto placed = [&] { return QRect(c->mapTo(w->centralWidget(), QPoint()), c->size()); };
        QTEST(placed(), "design");
        resizeContent(QSize(1000, 700));
        QTEST(placed(), "grown");
        resizeContent(QSize(600, 300));  // stops at the least size, 680 by 380
        resizeContent(QSize(870, 520));
    }

    // Each parent's controls by tab index; a group's controls right after the group.
    void tabOrder()
    {
        const QStringList expected = {"ListBox1",    "OnlyPicture", "TextArea1",   "AimValue(0)", "AimValue(5)",
                                      "LabText(11)", "AddValue(0)", "LabText(5)",  "BaseKind(1)", "BaseKind(2)",
                                      "BaseKind(3)", "BaseKind(4)", "BaseKind(5)", "ExecuteBtn"};
        QStringList seen;
        QWidget* c = w->centralWidget();
        while ((c = c->nextInFocusChain()) != w->centralWidget())
            if (expected.contains(nameOf(c)))
                seen << nameOf(c);
        QCOMPARE(seen, expected);
    }

    // Each menu's items in order, found again by name (and index): "name caption shortcut",
    // marked where hidden, given a menu role or ticked (copies kept in step at every start).
    // The Edit menu may hold more items than these.
    void menu_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::newRow("MenuBar1") << QStringList{"FileMenu &File ", "EditMenu(0) Edit ", "HelpMenu &Help "};
        QTest::newRow("FileMenu") << QStringList{"FileAddFiles Add Files… Ctrl+O", "UntitledSeparator(3) -",
                                                 "FileUndoLastRun Undo Last Run… Ctrl+Alt+Z",
                                                 "FileRunHistory Run History… ", "UntitledSeparator(4) -",
                                                 "FileQuit Quit Ctrl+Q quit"};
        QTest::newRow("EditMenu") << QStringList{"EditUndo Undo Ctrl+Z", "EditRedo Redo Ctrl+Shift+Z",
                                                 "UntitledSeparator(1) -", "EditCut Cut Ctrl+X", "EditCopy Copy Ctrl+C",
                                                 "EditPaste Paste Ctrl+V", "EditClear Clear ", "UntitledSeparator(2) -",
                                                 "EditOffsetFromKnownTime Offset from a Known Time… Ctrl+T",
                                                 "EditKeepCopies Keep copies in XMP and IPTC in step  ticked"};
        QTest::newRow("HelpMenu") << QStringList{"AppleAbout About Velkaro F1 about"};
    }
    void menu()
    {
        QFETCH(QStringList, items);
        auto* bar = qobject_cast<MenuBar1*>(w->menuBar());
        QVERIFY(bar);
        const QString name = QTest::currentDataTag();
        QWidget* menu = name == "MenuBar1" ? static_cast<QWidget*>(bar) : bar->findChild<QMenu*>(name);
        QVERIFY(menu);
        QStringList seen;
        for (QAction* a : menu->actions()) {
            const QVariant index = a->property("Index");
            QCOMPARE(bar->lookup(a->objectName(), index.isValid() ? index.toInt() : -1), a);
            const QAction::MenuRole role = a->menuRole();
            const QString item = nameOf(a) + ' ' + (a->isSeparator() ? "-" : a->text() + ' ' + a->shortcut().toString()) +
                                 (a->isVisible() ? "" : " hidden") +
                                 (role == QAction::QuitRole ? " quit" : role == QAction::AboutRole ? " about" : "") +
                                 (a->isChecked() ? " ticked" : "");
            if (name != "EditMenu" || items.contains(item) || !a->isCheckable())
                seen << item;
        }
        QCOMPARE(seen, items);
    }

    // The Edit items act on the focused add value, whose own change signal reports it. (A
    // paste over the selection is the redo's first step.)
    void editing_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("clipboard");
        QTest::newRow("copy") << QStringList{"EditCopy"} << "12" << "12";
        QTest::newRow("cut") << QStringList{"EditCut"} << "" << "12";
        QTest::newRow("clear") << QStringList{"EditClear"} << "" << "365";
        QTest::newRow("undo the paste") << QStringList{"EditPaste", "EditUndo"} << "12" << "365";
        QTest::newRow("and redo it") << QStringList{"EditPaste", "EditUndo", "EditRedo"} << "365" << "365";
    }
    void editing()
    {
        QFETCH(QStringList, steps);
        QLineEdit* days = w->AddValue(2);
        days->setFocus();
        days->setText(QStringLiteral("12"));
        days->selectAll();
        QApplication::clipboard()->setText(QStringLiteral("365"));
        QSignalSpy changes(days, &QLineEdit::textChanged);
        for (const QString& step : steps)
            MenuBar1::instance()->lookup(step)->trigger();
        QTEST(days->text(), "text");
        QTEST(changes.isEmpty() ? QStringLiteral("12") : changes.last().at(0).toString(), "text");
        QTEST(QApplication::clipboard()->text(), "clipboard");
    }

    // A press anywhere hides About, also on its controls; the next About shows the same
    // window without opening it again. The close button ends it; the next makes another.
    void about()
    {
        QPointer<AboutWindow> first;
        for (const QPoint at : {QPoint(5, 5), QPoint(150, 70), QPoint(150, 150)}) {
            QVERIFY(runAbout(w, [&](AboutWindow* a) {
                if (!first)
                    first = a, a->AppName->setText(QStringLiteral("kept"));  // undone by an open handler
                QCOMPARE(a, first.data());
                QVERIFY(a->isVisible() && a->isModal());
                QCOMPARE(a->VerString->text(), "Ver." + App::ShortVersion());
                QCOMPARE(a->AppName->text(), "kept");
                QWidget* target = a->childAt(at) ? a->childAt(at) : a;
                QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(a, at));
            }));
            QVERIFY(!first->isVisible());
        }
        QVERIFY(runAbout(w, [](AboutWindow* a) { a->close(); }));
        QTRY_VERIFY(first.isNull());
        QVERIFY(runAbout(w, [](AboutWindow* a) {
            a->hide();
            QCOMPARE(a->AppName->text(), "Velkaro");
        }));
    }

    // Each constant asks for its own key, even where two share a default text.
    void keys()
    {
        EchoTable table;  // its end takes it out of the application again
        QVERIFY(QCoreApplication::installTranslator(&table));
        for (const auto& [name, text] : kAll)
            QCOMPARE(text(), QStringLiteral("=Globals.") + name);
    }

    // The Japanese table is complete: only the program's name reads the same.
    void language_data()
    {
        QTest::addColumn<bool>("japanese");
        QTest::newRow("ja_JP") << true;
        QTest::newRow("en_US") << false;
        QTest::newRow("zh_CN") << false;  // shares the script, not the table
    }
    void language()
    {
        QFETCH(bool, japanese);
        QLocale::setDefault(QLocale(QString::fromLatin1(QTest::currentDataTag())));
        installTranslations(*qApp);
        const QStringList shown = texts();
        for (int i = 0; i < shown.size(); ++i) {
            QVERIFY2(!shown[i].isEmpty() || !japanese, kAll[i].first);
            QCOMPARE(shown[i] == original[i], !japanese || original[i] == "Velkaro");
        }
        // The menus too, made anew in that language: every caption.
        MenuBar1 bar;
        for (const QAction* a : bar.findChildren<QAction*>()) {
            const QAction* english = MenuBar1::instance()->findChild<QAction*>(a->objectName());
            QVERIFY2(a->isSeparator() || (a->text() == english->text()) != japanese, qPrintable(a->text()));
        }
        // Reports too, the handler's action and the reason alike.
        QString report;
        setFailureReport([&](const QString& action, const QString& reason) { report = action + '|' + reason; });
        guard("change the dates in the files", [] { throw NilObjectException(); });
        setFailureReport({});
        QCOMPARE(report, japanese ? "ファイルの日付を変更する|必要なものがもうありません。"
                                  : "change the dates in the files|Something that was needed is no longer there.");
    }

    void quitEndsTheEventLoop()
    {
        QTimer::singleShot(0, MenuBar1::instance()->lookup("FileQuit"), &QAction::trigger);
        QTimer::singleShot(10000, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
