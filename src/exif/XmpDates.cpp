#include "exif/XmpDates.h"

#include "platform/base/TextId.h"

namespace {

constexpr QByteArrayView kRdf = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";
constexpr int kMaxDepth = 256;

struct Property {
    QByteArrayView ns, local;
    int column;
    const char* name;
};
const Property kProperties[] = {
    {"http://ns.adobe.com/xap/1.0/", "ModifyDate", 3, "xmp:ModifyDate"},
    {"http://ns.adobe.com/tiff/1.0/", "DateTime", 3, "tiff:DateTime"},
    {"http://ns.adobe.com/exif/1.0/", "DateTimeOriginal", 4, "exif:DateTimeOriginal"},
    {"http://ns.adobe.com/photoshop/1.0/", "DateCreated", 4, "photoshop:DateCreated"},
    {"http://ns.adobe.com/xap/1.0/", "CreateDate", 5, "xmp:CreateDate"},
    {"http://ns.adobe.com/exif/1.0/", "DateTimeDigitized", 5, "exif:DateTimeDigitized"},
};

// Well-formed UTF-8: no stray continuation byte, no overlong form, no surrogate, nothing
// beyond U+10FFFF.
bool isUtf8(QByteArrayView s)
{
    for (qsizetype i = 0; i < s.size();) {
        const quint8 c = quint8(s[i]);
        if (c < 0x80) {
            ++i;
            continue;
        }
        const int n = c >= 0xC2 && c <= 0xDF ? 1 : c >= 0xE0 && c <= 0xEF ? 2 : c >= 0xF0 && c <= 0xF4 ? 3 : -1;
        if (n < 0 || s.size() - i <= n)
            return false;
        const quint8 c1 = quint8(s[i + 1]);
        // The second byte's narrower ranges rule out overlong forms, surrogates and > U+10FFFF.
        const quint8 lo = c == 0xE0 ? 0xA0 : c == 0xF0 ? 0x90 : 0x80;
        const quint8 hi = c == 0xED ? 0x9F : c == 0xF4 ? 0x8F : 0xBF;
        if (c1 < lo || c1 > hi)
            return false;
        for (int k = 2; k <= n; ++k)
            if ((quint8(s[i + k]) & 0xC0) != 0x80)
                return false;
        i += n + 1;
    }
    return true;
}

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Walks the packet's markup once: tags, attributes, text, comments, processing
// instructions and CDATA, with the namespace prefixes in scope, and notes the date
// properties of the top-level descriptions.
class Scanner {
public:
    explicit Scanner(QByteArrayView p) : p_(p) {}

    bool run(std::vector<XmpDate>& dates)
    {
        qsizetype at = 0;
        while (at < p_.size()) {
            const qsizetype lt = p_.indexOf('<', at);
            if (lt < 0)
                break;
            if (!stack_.empty())
                noteText(at, lt);
            if (!tag(lt, at, dates))
                return false;
        }
        return stack_.empty();
    }

private:
    enum Role { Other, Rdf, Description, Date };
    struct Element {
        QByteArrayView name;
        size_t bindings;  // of bindings_, before this element's own
        Role role;
        const Property* property;
        qsizetype textAt, textEnd;
        bool child;
    };
    struct Binding {
        QByteArrayView prefix, uri;
    };

    QByteArrayView uriOf(QByteArrayView prefix) const
    {
        for (auto b = bindings_.rbegin(); b != bindings_.rend(); ++b)
            if (b->prefix == prefix)
                return b->uri;
        return {};
    }
    // The namespace and local part of a qualified name; unprefixed attributes have none.
    std::pair<QByteArrayView, QByteArrayView> resolve(QByteArrayView q, bool attribute) const
    {
        const qsizetype colon = q.indexOf(':');
        if (colon < 0)
            return {attribute ? QByteArrayView() : uriOf({}), q};
        return {uriOf(q.first(colon)), q.sliced(colon + 1)};
    }
    const Property* propertyOf(QByteArrayView q, bool attribute) const
    {
        const auto [ns, local] = resolve(q, attribute);
        for (const Property& prop : kProperties)
            if (prop.local == local && prop.ns == ns)
                return &prop;
        return nullptr;
    }

    void noteText(qsizetype from, qsizetype to)
    {
        Element& e = stack_.back();
        if (e.role != Date || from == to)
            return;
        if (e.textAt < 0)
            e.textAt = from;
        e.textEnd = to;
    }

    qsizetype skipTo(qsizetype from, QByteArrayView end) const
    {
        const qsizetype k = p_.indexOf(end, from);
        return k < 0 ? -1 : k + end.size();
    }

    bool tag(qsizetype lt, qsizetype& at, std::vector<XmpDate>& dates)
    {
        const QByteArrayView rest = p_.sliced(lt);
        if (rest.startsWith("<?"))
            return (at = skipTo(lt, "?>")) >= 0;
        if (rest.startsWith("<!--"))
            return (at = skipTo(lt, "-->")) >= 0;
        if (rest.startsWith("<![CDATA[")) {
            if (!stack_.empty())
                stack_.back().child = true;  // a date in CDATA is not plain text: it stays
            return (at = skipTo(lt, "]]>")) >= 0;
        }
        if (rest.startsWith("<!"))
            return false;  // a document type has no place in a packet
        if (rest.startsWith("</"))
            return endTag(lt + 2, at, dates);
        return startTag(lt + 1, at, dates);
    }

    QByteArrayView name(qsizetype& at) const
    {
        const qsizetype from = at;
        while (at < p_.size() && !isSpace(p_[at]) && p_[at] != '/' && p_[at] != '>' && p_[at] != '=' && p_[at] != '<')
            ++at;
        return p_.sliced(from, at - from);
    }
    void skipSpace(qsizetype& at) const
    {
        while (at < p_.size() && isSpace(p_[at]))
            ++at;
    }

    bool endTag(qsizetype at, qsizetype& next, std::vector<XmpDate>& dates)
    {
        const QByteArrayView n = name(at);
        skipSpace(at);
        if (stack_.empty() || at >= p_.size() || p_[at] != '>' || n != stack_.back().name)
            return false;
        close(dates);
        next = at + 1;
        return true;
    }

    void close(std::vector<XmpDate>& dates)
    {
        const Element& e = stack_.back();
        if (e.role == Date && !e.child && e.textAt >= 0) {
            qsizetype a = e.textAt, b = e.textEnd;
            while (a < b && isSpace(p_[a]))
                ++a;
            while (b > a && isSpace(p_[b - 1]))
                --b;
            dates.push_back({a, b - a, e.property->column, e.property->name});
        }
        bindings_.resize(e.bindings);
        stack_.pop_back();
    }

    bool startTag(qsizetype at, qsizetype& next, std::vector<XmpDate>& dates)
    {
        if (stack_.size() >= kMaxDepth)
            return false;
        const QByteArrayView n = name(at);
        if (n.isEmpty())
            return false;
        Element e{n, bindings_.size(), Other, nullptr, -1, -1, false};
        attributes_.clear();
        for (;;) {
            skipSpace(at);
            if (at >= p_.size())
                return false;
            if (p_[at] == '>' || p_[at] == '/')
                break;
            const QByteArrayView a = name(at);
            skipSpace(at);
            if (a.isEmpty() || at >= p_.size() || p_[at] != '=')
                return false;
            ++at;
            skipSpace(at);
            if (at >= p_.size() || (p_[at] != '"' && p_[at] != '\''))
                return false;
            const qsizetype close = p_.indexOf(p_[at], at + 1);
            if (close < 0)
                return false;
            const QByteArrayView value = p_.sliced(at + 1, close - at - 1);
            if (value.contains('<'))
                return false;
            if (a == "xmlns")
                bindings_.push_back({{}, value});
            else if (a.startsWith("xmlns:"))
                bindings_.push_back({a.sliced(6), value});
            else
                attributes_.push_back({a, at + 1, value.size()});
            at = close + 1;
        }
        const bool empty = p_[at] == '/';
        if (empty && (at + 1 >= p_.size() || p_[at + 1] != '>'))
            return false;
        next = at + (empty ? 2 : 1);

        const Role parent = stack_.empty() ? Other : stack_.back().role;
        if (!stack_.empty())
            stack_.back().child = true;
        const auto [ns, local] = resolve(n, false);
        if (ns == kRdf && local == "RDF")
            e.role = Rdf;
        else if (parent == Rdf && ns == kRdf && local == "Description") {
            e.role = Description;
            for (const Attribute& a : attributes_)
                if (const Property* prop = propertyOf(a.name, true))
                    dates.push_back({a.at, a.length, prop->column, prop->name});
        } else if (parent == Description && (e.property = propertyOf(n, false)))
            e.role = Date;
        stack_.push_back(e);
        if (empty)
            close(dates);
        return true;
    }

    struct Attribute {
        QByteArrayView name;
        qsizetype at, length;
    };
    QByteArrayView p_;
    std::vector<Element> stack_;
    std::vector<Binding> bindings_;
    std::vector<Attribute> attributes_;
};

}  // namespace

QString xmpTooLargeWhy()
{
    return textById("Copy.xmpTooLarge", "the XMP packet is larger than %1 MiB").arg(kMaxXmpPacket >> 20);
}

XmpDates findXmpDates(QByteArrayView packet)
{
    XmpDates out;
    if (packet.size() > kMaxXmpPacket) {
        out.why = xmpTooLargeWhy();
        return out;
    }
    if (!isUtf8(packet)) {
        out.why = textById("Copy.xmpBadUtf8", "the XMP packet is not valid UTF-8");
        return out;
    }
    if (!Scanner(packet).run(out.dates)) {
        out.dates.clear();
        out.why = textById("Copy.xmpNotWellFormed", "the XMP packet is not well formed");
    }
    return out;
}
