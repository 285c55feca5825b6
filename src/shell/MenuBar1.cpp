// The menu bar, its standard editing on the focused text field, and the About command.

#include "shell/MenuBar1.h"

#include <QApplication>
#include <QClipboard>
#include <QIcon>
#include <QLineEdit>
#include <QMimeDatabase>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QRadioButton>
#include <QTextEdit>

#include "MimeTypes.h"  // generated from velkaro.desktop
#include "platform/widgets/FileChooser.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/base/TextId.h"
#include "shell/AboutWindow.h"
#include "shell/App.h"
#include "shell/Globals.h"
#include "shell/Window1.h"

namespace {

enum class Edit { Undo, Redo, Cut, Copy, Paste, Clear };

// What an item can do on a multi-line text widget, whichever of the two kinds it is.
template <class T>
bool canEditText(Edit what, T* t, bool hasText)
{
    const bool writable = !t->isReadOnly();
    const bool selected = t->textCursor().hasSelection();
    switch (what) {
    case Edit::Undo: return writable && t->document()->isUndoAvailable();
    case Edit::Redo: return writable && t->document()->isRedoAvailable();
    case Edit::Cut: return writable && selected;
    case Edit::Copy: return selected;
    case Edit::Paste: return writable && hasText;
    case Edit::Clear: return writable && selected;
    }
    return false;
}

// What an item can do on a text widget, and doing it. A line edit's own signals carry an
// edit on, so an add value changed from the menu hears of it as it would of typing.
bool canEdit(Edit what, QWidget* w)
{
    const bool hasText = !QApplication::clipboard()->text().isEmpty();
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        const bool writable = !e->isReadOnly();
        switch (what) {
        case Edit::Undo: return writable && e->isUndoAvailable();
        case Edit::Redo: return writable && e->isRedoAvailable();
        case Edit::Cut: return writable && e->hasSelectedText() && e->echoMode() == QLineEdit::Normal;
        case Edit::Copy: return e->hasSelectedText() && e->echoMode() == QLineEdit::Normal;
        case Edit::Paste: return writable && hasText;
        case Edit::Clear: return writable && e->hasSelectedText();
        }
    }
    if (auto* t = qobject_cast<QPlainTextEdit*>(w))
        return canEditText(what, t, hasText);
    if (auto* t = qobject_cast<QTextEdit*>(w))
        return canEditText(what, t, hasText);
    return false;
}

template <class T>
void editText(Edit what, T* t)
{
    switch (what) {
    case Edit::Undo: t->undo(); break;
    case Edit::Redo: t->redo(); break;
    case Edit::Cut: t->cut(); break;
    case Edit::Copy: t->copy(); break;
    case Edit::Paste: t->paste(); break;
    case Edit::Clear: t->textCursor().removeSelectedText(); break;
    }
}

void edit(Edit what, QWidget* w)
{
    if (!canEdit(what, w))
        return;
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        switch (what) {
        case Edit::Undo: e->undo(); break;
        case Edit::Redo: e->redo(); break;
        case Edit::Cut: e->cut(); break;
        case Edit::Copy: e->copy(); break;
        case Edit::Paste: e->paste(); break;
        case Edit::Clear: e->del(); break;
        }
    } else if (auto* t = qobject_cast<QPlainTextEdit*>(w)) {
        editText(what, t);
    } else if (auto* t = qobject_cast<QTextEdit*>(w)) {
        editText(what, t);
    }
}

// The text field that has the focus: in the active window, else in the window that shows
// this menu bar.
QWidget* focusedField(const QMenuBar* bar)
{
    if (QWidget* w = QApplication::focusWidget())
        return w;
    const QWidget* window = bar->window();
    return window ? window->focusWidget() : nullptr;
}

QPointer<MenuBar1> theMenuBar;

}  // namespace

MenuBar1* MenuBar1::instance()
{
    if (!theMenuBar)
        theMenuBar = new MenuBar1;
    return theMenuBar;
}

MenuBar1::MenuBar1(QWidget* parent) : QMenuBar(parent)
{
    setObjectName(QStringLiteral("MenuBar1"));
    Untitled0();
    Untitled1();
}

// The menus on the bar, and the File menu's items. The journal's two items stand ready,
// hidden, for the journal to show and connect.
void MenuBar1::Untitled0()
{
    QMenu* file = makeMenu(this, QStringLiteral("FileMenu"), textById("Menu.file", "&File"));
    addItem(file, QStringLiteral("FileAddFiles"), textById("Menu.addFiles", "Add Files…"),
            QKeySequence(Qt::CTRL | Qt::Key_O));
    addItem(file, QStringLiteral("UntitledSeparator"), {}, {}, 3)->setSeparator(true);
    addItem(file, QStringLiteral("FileUndoLastRun"), textById("Menu.undoLastRun", "Undo Last Run…"),
            QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_Z))
        ->setVisible(false);
    addItem(file, QStringLiteral("FileRunHistory"), textById("Menu.runHistory", "Run History…"), {})
        ->setVisible(false);
    addItem(file, QStringLiteral("UntitledSeparator"), {}, {}, 4)->setSeparator(true);
    QAction* quit = addItem(file, QStringLiteral("FileQuit"), Globals::kEditQuit(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, qApp, [] { guard("quit", [] { QCoreApplication::quit(); }); });

    QMenu* menu = makeMenu(this, QStringLiteral("EditMenu"), Globals::kEditMenu());
    menu->menuAction()->setProperty("Index", 0);
    connect(menu, &QMenu::aboutToShow, this, [this] { enableEditItems(true); });
    // Closed again, the items wait for their shortcuts, which check for themselves.
    connect(menu, &QMenu::aboutToHide, this, [this] { enableEditItems(false); });

    makeMenu(this, QStringLiteral("HelpMenu"), textById("Menu.help", "&Help"));
}

// The Edit menu's items, and About in the Help menu.
void MenuBar1::Untitled1()
{
    struct Item {
        const char* name;
        QString caption;
        QKeySequence shortcut;
        int index;
        Edit edit;
    };
    const Item items[] = {
        {"EditUndo", Globals::kEditUndo(), QKeySequence::Undo, -1, Edit::Undo},
        {"EditRedo", Globals::kEditRedo(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), -1, Edit::Redo},
        {"UntitledSeparator", {}, {}, 1, Edit::Undo},
        {"EditCut", Globals::kEditCut(), QKeySequence::Cut, -1, Edit::Cut},
        {"EditCopy", Globals::kEditCopy(), QKeySequence::Copy, -1, Edit::Copy},
        {"EditPaste", Globals::kEditPaste(), QKeySequence::Paste, -1, Edit::Paste},
        {"EditClear", Globals::kEditClear(), {}, -1, Edit::Clear},
        {"UntitledSeparator", {}, {}, 2, Edit::Undo},
    };
    for (const Item& item : items) {
        // Each item goes into the menu found again by its name.
        QMenu* menu = EditMenu();
        if (item.index > 0) {
            addItem(menu, QString::fromLatin1(item.name), {}, {}, item.index)->setSeparator(true);
            continue;
        }
        QAction* a = addItem(menu, QString::fromLatin1(item.name), item.caption, item.shortcut);
        const Edit what = item.edit;
        connect(a, &QAction::triggered, this,
                [this, what] { guard("carry out the edit command", [&] { edit(what, focusedField(this)); }); });
    }
    // The window connects it and keeps it enabled only while it has a base date to act on.
    addItem(EditMenu(), QStringLiteral("EditOffsetFromKnownTime"),
            textById("Menu.offsetFromKnownTime", "Offset from a Known Time…"), QKeySequence(Qt::CTRL | Qt::Key_T));

    QAction* about = addItem(lookup(QStringLiteral("HelpMenu"))->menu(), QStringLiteral("AppleAbout"),
                             textById("Menu.about", "About Velkaro"), QKeySequence(Qt::Key_F1));
    about->setMenuRole(QAction::AboutRole);
}

QMenu* MenuBar1::makeMenu(QMenuBar* bar, const QString& name, const QString& title)
{
    QMenu* menu = bar->addMenu(title);
    menu->setObjectName(name);
    menu->menuAction()->setObjectName(name);
    return menu;
}

QAction* MenuBar1::addItem(QWidget* into, const QString& name, const QString& caption,
                           const QKeySequence& shortcut, int index)
{
    auto* a = new QAction(caption, into);
    a->setObjectName(name);
    a->setShortcut(shortcut);
    a->setEnabled(true);
    a->setVisible(true);
    if (index >= 0)
        a->setProperty("Index", index);
    into->addAction(a);
    return a;
}

QAction* MenuBar1::lookup(const QString& name, int index) const
{
    QList<QAction*> pending = actions();
    while (!pending.isEmpty()) {
        QAction* a = pending.takeFirst();
        const QVariant i = a->property("Index");
        if (a->objectName() == name && (index < 0 ? !i.isValid() : i.isValid() && i.toInt() == index))
            return a;
        if (QMenu* sub = a->menu())
            pending += sub->actions();
    }
    return nullptr;
}

QMenu* MenuBar1::EditMenu() const
{
    QAction* a = lookup(QStringLiteral("EditMenu"), 0);
    return a ? a->menu() : nullptr;
}

// While the menu is open, only the items that have something to act on are enabled.
void MenuBar1::enableEditItems(bool opening)
{
    QWidget* w = focusedField(this);
    const std::pair<const char*, Edit> items[] = {
        {"EditUndo", Edit::Undo}, {"EditRedo", Edit::Redo}, {"EditCut", Edit::Cut},
        {"EditCopy", Edit::Copy}, {"EditPaste", Edit::Paste}, {"EditClear", Edit::Clear},
    };
    for (const auto& [name, what] : items)
        if (QAction* a = lookup(QString::fromLatin1(name)))
            a->setEnabled(!opening || canEdit(what, w));
}

void Window1::bindMenu()
{
    // The program's icon comes with its menu bar, for every window and the desktop's
    // task switcher.
    QApplication::setWindowIcon(QIcon(QPixmap::fromImage(vlk_Icon_BigSur_128())));
    MenuBar1* bar = MenuBar1::instance();
    setMenuBar(bar);
    const auto bind = [&](const char* name, const char* action, void (Window1::*handler)()) {
        if (QAction* item = bar->lookup(QString::fromLatin1(name)))
            connect(item, &QAction::triggered, this, [this, action, handler] { guard(action, [&] { (this->*handler)(); }); });
    };
    if (QAction* about = bar->lookup(QStringLiteral("AppleAbout")))
        connect(about, &QAction::triggered, this,
                [this] { guard("open the About window", [&] { _AppleAbout_Action(); }); });
    bind("FileAddFiles", "add the chosen files", &Window1::FileAddFiles_Action);
    bind("EditOffsetFromKnownTime", "offset from a known time", &Window1::EditOffsetFromKnownTime_Action);

    // The known-time item follows the selected row and its base.
    const auto follow = [this] { guard("offset from a known time", [this] { enableOffsetFromKnownTime(); }); };
    connect(ListBox1, &Listbox::Change, this, follow);
    for (const auto& [index, button] : BaseKind)
        connect(button, &QRadioButton::toggled, this, follow);
    connect(bar->EditMenu(), &QMenu::aboutToShow, this, follow);
    follow();
}

bool Window1::_AppleAbout_Action()
{
    AboutWindow::instance()->ShowModal();
    return false;
}

// The types offered first are those the desktop opens with the program (velkaro.desktop's
// MimeType, given by the build).
void Window1::FileAddFiles_Action()
{
    QStringList patterns;
    const QMimeDatabase types;
    for (const QString& name : QStringLiteral(VELKARO_MIME_TYPES).split(u','))
        for (const QString& pattern : types.mimeTypeForName(name).globPatterns())
            if (!patterns.contains(pattern))
                patterns << pattern;
    const QStringList filters = {
        textById("AddFiles.photos", "Photos (%1)").arg(patterns.join(u' ')),
        textById("AddFiles.all", "All files (*)"),
    };
    App::openDocuments(chooseFiles(this, textById("AddFiles.title", "Add Files"), filters));
}
