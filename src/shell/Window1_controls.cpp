// The window's controls, made back to front with their design rectangles, locks, tab
// order, states, fonts and texts. Rectangles are in the content area's coordinates, for
// controls inside a group too; the lock layout puts them into their parent's.

#include "shell/Window1.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include <map>
#include <vector>

#include "platform/widgets/Canvas.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/LockLayout.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/widgets/Shapes.h"
#include "shell/Globals.h"

namespace {

// "System" at a pixel size: the design's sizes are layout units, not points, and its
// captions were measured in a Helvetica-wide face (fontconfig gives Nimbus Sans or
// Liberation Sans for it).
QFont systemFont(int pixelSize)
{
    QFont f(QStringLiteral("Helvetica"));
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(pixelSize);
    return f;
}

// The table's cells: a 15% column leaves about 100 pixels beside its box, which a
// 19-character date fills only in a narrow face.
QFont tableFont(int pixelSize)
{
    QFont f(QStringLiteral("Helvetica Narrow"));
    f.setStyleHint(QFont::SansSerif);
    f.setStretch(QFont::SemiCondensed);
    f.setPixelSize(pixelSize);
    return f;
}

// The file table and the strip above it share their columns, and the tick logic counts on
// it: seven columns, the same widths, the same face.
void setUpFileColumns(Listbox* table, bool hasHeader, const QString& initialValue, int rowSelectionType)
{
    table->setFont(tableFont(12));
    table->setColumnCount(7);
    table->setColumnWidths(QStringLiteral(",15%,15%,15%,15%,15%,0"));
    table->setHasHeader(hasHeader);
    table->setInitialValue(initialValue);
    table->setRowSelectionType(rowSelectionType);
}

bool isFixedPitch(const QFont& f)
{
    const QFontMetrics m(f);
    return m.horizontalAdvance(QLatin1Char('i')) == m.horizontalAdvance(QLatin1Char('W'));
}

// The hover tag asks for Monaco; any fixed-pitch face serves where it is missing.
QFont fixedFont(int pixelSize)
{
    QFont f(QStringLiteral("Monaco"));
    f.setPixelSize(pixelSize);
    if (!isFixedPitch(f)) {
        f.setFamily(QStringLiteral("monospace"));
        f.setStyleHint(QFont::TypeWriter);
        f.setFixedPitch(true);
    }
    return f;
}

// The design's colours for the field as it is used; disabled, it keeps the look that the
// platform's style gives any disabled field.
void setColors(QWidget* w, QRgb text, QRgb background)
{
    QPalette p = w->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        p.setColor(group, QPalette::Text, QColor(text));
        p.setColor(group, QPalette::Base, QColor(background));
    }
    w->setPalette(p);
}

// Hands controls to the lock layout and remembers the tab order per parent.
class Builder {
public:
    Builder(QWidget* content, LockLayout* layout) : content_(content), layout_(layout) {}

    template <class W>
    W* place(W* w, const QString& name, int left, int top, int width, int height, const char* locks, int tab)
    {
        w->setObjectName(name);
        layout_->add(w, QRect(left, top, width, height), QString::fromLatin1(locks));
        tabs_[w->parentWidget()].emplace(tab, w);
        return w;
    }

    template <class W>
    W* member(W* w, const QString& name, int index, int left, int top, int width, int height, const char* locks,
              int tab)
    {
        w->setProperty("Index", index);
        return place(w, name, left, top, width, height, locks, tab);
    }

    // Chains the focus order: each parent's controls by their tab index, a group's
    // controls right after the group.
    void applyTabOrder()
    {
        std::vector<QWidget*> order;
        collect(content_, order);
        for (size_t i = 1; i < order.size(); ++i)
            QWidget::setTabOrder(order[i - 1], order[i]);
    }

private:
    void collect(QWidget* parent, std::vector<QWidget*>& order)
    {
        auto it = tabs_.find(parent);
        if (it == tabs_.end())
            return;
        for (auto& [tab, w] : it->second) {
            if (w->focusPolicy() != Qt::NoFocus)  // Qt chains only controls that take focus
                order.push_back(w);
            collect(w, order);
        }
    }

    QWidget* content_;
    LockLayout* layout_;
    std::map<QWidget*, std::multimap<int, QWidget*>> tabs_;
};

}  // namespace

void Window1::CreateControls()
{
    QWidget* content = centralWidget();
    lockLayout = new LockLayout(content, QSize(870, 520));
    Builder b(content, lockLayout);
    const QFont font12 = systemFont(12);
    const QFont font9 = systemFont(9);

    // The frame that shows a drag over the window, behind everything.
    Winback = b.place(new RectangleShape(content), "Winback", 2, 2, 866, 516, "LTRB", 0);
    Winback->setBorderThickness(2);
    Winback->setBorderColor(Qt::black);
    Winback->setVisible(false);

    ListBox1 = b.place(new Listbox(content), "ListBox1", 20, 268, 830, 212, "LTRB", 2);
    setUpFileColumns(ListBox1, true, Globals::kListInitValue(), 0);

    // The strip of select-all boxes, with the same columns as the table below it.
    ListHeader = b.place(new Listbox(content), "ListHeader", 20, 244, 830, 20, "LR", 3);
    setUpFileColumns(ListHeader, false, Globals::kListHeaderInitValue(), 1);

    Timer1 = new OneShotTimer(this);
    Timer2 = new OneShotTimer(this);

    OnlyPicture = b.place(new QCheckBox(Globals::kOnlyPictCheck(), content), "OnlyPicture", 337, 486, 500, 20,
                          "RB", 8);
    OnlyPicture->setFont(font12);

    // The hover tag: placed, sized and shown by the table's mouse moves.
    FileNameTag = b.place(new QLineEdit(QStringLiteral("Filename Field"), content), "FileNameTag", 20, 484, 150,
                          22, "", 9);
    FileNameTag->setFont(fixedFont(14));
    FileNameTag->setAlignment(Qt::AlignCenter);
    setColors(FileNameTag, 0x3D238F, 0xFFFF99);
    FileNameTag->setVisible(false);

    Timer3 = new OneShotTimer(this);
    Timer4 = new OneShotTimer(this);

    ImageBack = b.place(new RoundRectangleShape(content), "ImageBack", 20, 17, 215, 215, "", 4);
    ImageBack->setCornerSize(16);
    ImageBack->setBorderThickness(1);
    ImageBack->setBorderColor(QColor(0xB3, 0xB3, 0xB3));
    ImageBack->setFillColor(Qt::white);
    ImageBack->setEnabled(false);

    Canvas1 = b.place(new Canvas(ImageBack), "Canvas1", 27, 24, 200, 200, "", 0);
    Canvas1->setEnabled(false);
    Canvas1->setFocusPolicy(Qt::NoFocus);

    TextArea1 = b.place(new QPlainTextEdit(content), "TextArea1", 245, 20, 180, 209, "LR", 10);
    TextArea1->setFont(font12);
    TextArea1->setPlainText(Globals::kUsageText());
    TextArea1->setReadOnly(true);
    TextArea1->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    TextArea1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setColors(TextArea1, 0x000000, 0xFFFFFF);

    // The scheduled value of the selected row: six read-only fields and their separators.
    AimGroup = b.place(new QGroupBox(Globals::kAimGroupCap(), content), "AimGroup", 435, 180, 415, 55, "R", 11);
    AimGroup->setFont(font12);
    const int aimLeft[6] = {474, 539, 597, 669, 726, 783};
    for (int i = 0; i < 6; ++i) {
        auto* f = b.member(new QLineEdit(AimGroup), "AimValue", i, aimLeft[i], 204, i == 0 ? 40 : 30, 22, "R", i);
        f->setFont(font12);
        f->setReadOnly(true);
        f->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setColors(f, 0x000000, 0xFFFFFF);
        AimValue.add(i, f);
    }
    const QString separators[6] = {Globals::kTxY(),    Globals::kTxM(),   Globals::kTxD(),
                                   Globals::kTxHour(), Globals::kTxMin(), Globals::kTxSec()};
    const int aimLabelLeft[6] = {516, 573, 630, 702, 759, 817};
    for (int i = 0; i < 6; ++i) {
        auto* l = b.member(new QLabel(separators[i], AimGroup), "LabText", 6 + i, aimLabelLeft[i], 207, 20, 20, "R",
                           6 + i);
        LabText.add(6 + i, l);
    }

    // The base choice; made in the order 1, 2, 4, 5, 3, tabbed in the order of the numbers.
    BaseGroup = b.place(new QGroupBox(Globals::kBaseGroupCap(), content), "BaseGroup", 435, 20, 335, 90, "R", 13);
    BaseGroup->setFont(font12);
    struct Kind {
        int index, left, top, width;
        QString text;
    };
    const Kind kinds[5] = {{1, 438, 40, 145, Globals::kBaseKind1()},
                           {2, 438, 62, 145, Globals::kBaseKind2()},
                           {4, 585, 62, 183, Globals::kBaseKind4()},
                           {5, 585, 84, 183, Globals::kBaseKind5()},
                           {3, 585, 40, 183, Globals::kBaseKind3()}};
    for (const Kind& k : kinds) {
        auto* r = b.member(new QRadioButton(k.text, BaseGroup), "BaseKind", k.index, k.left, k.top, k.width, 20, "R",
                           k.index - 1);
        r->setFont(font12);
        r->setChecked(k.index == 4);
        BaseKind.add(k.index, r);
    }
    Timer5 = new OneShotTimer(this);

    // The add values and their separators; year and month are locked until enabled.
    AddGroup = b.place(new QGroupBox(Globals::kAddGroupCap(), content), "AddGroup", 435, 118, 415, 55, "R", 12);
    AddGroup->setFont(font12);
    const int addLeft[6] = {474, 526, 580, 669, 726, 783};
    for (int i = 0; i < 6; ++i) {
        auto* f = b.member(new QLineEdit(QStringLiteral("0"), AddGroup), "AddValue", i, addLeft[i], 142,
                           i == 2 ? 50 : 30, 22, "R", i);
        f->setFont(font12);
        f->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setColors(f, 0x000000, 0xFFFFFF);
        f->setEnabled(i >= 2);
        AddValue.add(i, f);
    }
    const int addLabelLeft[6] = {506, 558, 633, 702, 759, 817};
    for (int i = 0; i < 6; ++i) {
        auto* l = b.member(new QLabel(separators[i], AddGroup), "LabText", i, addLabelLeft[i], 145, 20, 20, "R", 6 + i);
        LabText.add(i, l);
    }

    // Both sit on the top edge of AddGroup but belong to the window.
    ClearBtn = b.place(new QToolButton(content), "ClearBtn", 545, 118, 50, 14, "TR", 14);
    ClearBtn->setText(Globals::kClearBtnCap());
    ClearBtn->setFont(font9);
    ClearBtn->setFocusPolicy(Qt::NoFocus);

    AddValCheckBox = b.place(new QCheckBox(Globals::kAddValueCheck(), content), "AddValCheckBox", 614, 118, 157, 14,
                             "TR", 15);
    AddValCheckBox->setFont(font9);

    ExecuteBtn = b.place(new QPushButton(Globals::kExecuteBtnCap(), content), "ExecuteBtn", 774, 35, 76, 76, "R", 16);
    ExecuteBtn->setFont(font12);
    ExecuteBtn->setAutoDefault(false);
    ExecuteBtn->setDefault(false);

    for (auto& [i, l] : LabText) {
        l->setFont(font12);
        l->setAlignment(Qt::AlignCenter);
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    for (OneShotTimer* t : {Timer1, Timer2, Timer3, Timer4, Timer5})
        t->setPeriod(10);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer2->setObjectName(QStringLiteral("Timer2"));
    Timer3->setObjectName(QStringLiteral("Timer3"));
    Timer4->setObjectName(QStringLiteral("Timer4"));
    Timer5->setObjectName(QStringLiteral("Timer5"));

    b.applyTabOrder();
}
