#include "platform/widgets/LockLayout.h"

#include <QEvent>

#include <algorithm>

LockLayout::LockLayout(QWidget* content, QSize designSize) : QObject(content), content_(content), design_(designSize)
{
    if (content)
        content->installEventFilter(this);
}

QRect LockLayout::place(const QRect& d, const QString& locks, QSize designSize, QSize contentSize)
{
    const auto has = [&](QChar c) { return locks.contains(c, Qt::CaseInsensitive); };
    const int dw = contentSize.width() - designSize.width();
    const int dh = contentSize.height() - designSize.height();
    int left = d.x();
    int top = d.y();
    int width = d.width();
    int height = d.height();
    if (has(u'L') && has(u'R'))
        width += dw;
    else if (has(u'R'))
        left += dw;
    if (has(u'T') && has(u'B'))
        height += dh;
    else if (has(u'B'))
        top += dh;
    return QRect(left, top, width, height);
}

void LockLayout::add(QWidget* control, const QRect& designRect, const QString& locks)
{
    if (!control)
        return;
    entries_.push_back({control, designRect, locks});
    placeEntry(entries_.back(), contentSize());
}

void LockLayout::apply(const QSize& contentSize)
{
    for (Entry& e : entries_)
        placeEntry(e, contentSize);
}

QSize LockLayout::contentSize() const
{
    return content_ ? content_->size() : design_;
}

QRect LockLayout::rectOf(const QWidget* control) const
{
    // From the content's size of this moment: a hidden window gets its resize events
    // only when it is shown.
    for (const Entry& e : entries_)
        if (e.control == control)
            return place(e.design, e.locks, design_, contentSize());
    return {};
}

QPoint LockLayout::originOf(const QWidget* parent, const QSize& contentSize) const
{
    // A control's geometry is relative to its parent: find where that parent stands in
    // content coordinates, from its own entry if it has one.
    if (!parent || parent == content_)
        return {};
    for (const Entry& e : entries_)
        if (e.control == parent)
            return place(e.design, e.locks, design_, contentSize).topLeft();
    if (content_ && content_->isAncestorOf(parent))
        return parent->mapTo(content_, QPoint(0, 0));
    return {};
}

void LockLayout::placeEntry(Entry& entry, const QSize& contentSize)
{
    if (!entry.control)
        return;
    const QRect r = place(entry.design, entry.locks, design_, contentSize);
    const QPoint at = r.topLeft() - originOf(entry.control->parentWidget(), contentSize);
    entry.control->setGeometry(at.x(), at.y(), std::max(0, r.width()), std::max(0, r.height()));
}

bool LockLayout::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == content_ && e->type() == QEvent::Resize)
        apply(content_->size());
    return QObject::eventFilter(watched, e);
}

#include "moc_LockLayout.cpp"
