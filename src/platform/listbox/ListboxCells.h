#pragma once
// How the table keeps a cell: texts and tags held compactly, so that 100,000 rows of a
// file's name, five dates and their tags cost little more than their bytes. Used by the
// table's model only.

#include <QString>
#include <QVariant>

#include <cstring>
#include <memory>
#include <variant>

#include "platform/text/Date.h"
#include "platform/files/FolderItem.h"
#include "platform/text/Text.h"

namespace listboxCells {

// Up to 23 Latin-1 characters in place.
struct ShortText {
    quint8 size = 0;
    char chars[23];
    QLatin1StringView latin1() const { return QLatin1StringView(chars, size); }
};

// A cell's text. Up to 23 Latin-1 characters are kept in place, one byte each: the date
// texts and most file names, which would otherwise cost a heap block of UTF-16 each.
// Any other text is kept as the QString it came as. Both compare in code-unit order, as
// QString does.
class CellText {
public:
    QString toString() const
    {
        if (const QString* s = std::get_if<QString>(&value_))
            return *s;
        const Short& b = std::get<Short>(value_);
        return b.size == 0 ? QString() : QString::fromLatin1(b.chars, b.size);
    }

    void assign(const QString& text)
    {
        const qsizetype n = text.size();
        if (n > qsizetype(sizeof(Short::chars))) {
            value_ = text;
            return;
        }
        Short b;
        const QChar* from = text.constData();
        for (qsizetype i = 0; i < n; ++i) {
            if (from[i].unicode() > 0xff) {
                value_ = text;
                return;
            }
            b.chars[i] = char(from[i].unicode());
        }
        b.size = quint8(n);
        value_ = b;
    }

    // Negative, zero or positive as this text sorts before, with or after the other.
    int compare(const CellText& o) const
    {
        const Short* a = std::get_if<Short>(&value_);
        const Short* b = std::get_if<Short>(&o.value_);
        if (a && b) {
            const int c = std::memcmp(a->chars, b->chars, std::min(a->size, b->size));
            return c != 0 ? c : int(a->size) - int(b->size);
        }
        if (a)
            return -std::get<QString>(o.value_).compare(a->latin1());
        if (b)
            return std::get<QString>(value_).compare(b->latin1());
        return std::get<QString>(value_).compare(std::get<QString>(o.value_));
    }

    // As sameText tells, case ignored, without making a string of a text kept in place.
    bool sameAs(const QString& text) const
    {
        if (const Short* b = std::get_if<Short>(&value_))
            return b->size == text.size() && QString::compare(text, b->latin1(), Qt::CaseInsensitive) == 0;
        return sameText(std::get<QString>(value_), text);
    }

    bool equals(const QString& text) const
    {
        if (const Short* b = std::get_if<Short>(&value_))
            return text == b->latin1();
        return text == std::get<QString>(value_);
    }

private:
    using Short = ShortText;
    std::variant<Short, QString> value_;
};

// A cell's tag. The values the file table keeps in every row are held as themselves:
// numbers, a Date packed into one word, a FolderItem in a block of its own. Anything else
// is kept as the QVariant it came as. Every tag reads back as a QVariant of the type that
// was written.
class CellTag {
public:
    QVariant toVariant() const
    {
        return std::visit(
            [](const auto& v) -> QVariant {
                using T = std::decay_t<decltype(v)>;
                if constexpr (std::is_same_v<T, std::monostate>)
                    return {};
                else if constexpr (std::is_same_v<T, PackedDate>)
                    return QVariant::fromValue(v.unpack());
                else if constexpr (std::is_same_v<T, std::unique_ptr<FolderItem>>)
                    return QVariant::fromValue(*v);
                else if constexpr (std::is_same_v<T, std::unique_ptr<QVariant>>)
                    return *v;
                else
                    return QVariant(v);
            },
            value_);
    }

    void assign(const QVariant& tag)
    {
        const int type = tag.typeId();
        if (!tag.isValid())
            value_ = std::monostate();
        else if (type == QMetaType::Double)
            value_ = tag.toDouble();
        else if (type == QMetaType::LongLong)
            value_ = tag.toLongLong();
        else if (type == QMetaType::Int)
            value_ = tag.toInt();
        else if (type == qMetaTypeId<Date>())
            value_ = PackedDate(*static_cast<const Date*>(tag.constData()));
        else if (type == qMetaTypeId<FolderItem>())
            value_ = std::make_unique<FolderItem>(*static_cast<const FolderItem*>(tag.constData()));
        else
            value_ = std::make_unique<QVariant>(tag);
    }

private:
    // A Date in one word: every field of a Date within its range fits in 51 bits.
    struct PackedDate {
        quint64 bits = 0;
        explicit PackedDate(const Date& d)
            : bits(quint64(d.Year() - Date::kMinYear) << 26 | quint64(d.Month()) << 22 | quint64(d.Day()) << 17
                   | quint64(d.Hour()) << 12 | quint64(d.Minute()) << 6 | quint64(d.Second()))
        {
        }
        Date unpack() const
        {
            return Date(qint64(bits >> 26) + Date::kMinYear, qint64(bits >> 22 & 0xf), qint64(bits >> 17 & 0x1f),
                        qint64(bits >> 12 & 0x1f), qint64(bits >> 6 & 0x3f), qint64(bits & 0x3f));
        }
    };
    std::variant<std::monostate, double, qint64, int, PackedDate, std::unique_ptr<FolderItem>, std::unique_ptr<QVariant>>
        value_;
};

}  // namespace listboxCells
