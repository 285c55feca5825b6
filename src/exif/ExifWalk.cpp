// The walk of a TIFF block's directories: the chain of image file directories from the
// first, and the Exif directories they point to, filling row curRow of ListBox1 with the
// three date texts, their byte positions and the orientation code. getExifInfo starts it
// where the header stands.
//
// Positions and offsets stay Double from the moment they are read; they become stream
// positions only through toPosition, where a negative one lies beyond any end and simply
// reads nothing. Nothing here tests what a read gave: a short read leaves zeros.

#include "shell/Window1.h"

#include "exif/Tags.h"
#include "platform/base/Convert.h"
#include "platform/listbox/Listbox.h"
#include "platform/files/MemoryBlock.h"
#include "platform/text/Text.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <memory>
#include <vector>

namespace {

// The chain of directories is followed for at most this many passes; a loop in the chain
// repeats the same directory until then.
constexpr int kChainPasses = 101;

// Clockwise quarter turns that bring the picture upright, by orientation value 1 to 8;
// mirroring is dropped, and any other value selects no field, which reads as 0.
const QString kOrientationCodes = QStringLiteral("0,0,2,2,3,1,1,3");

// The decimal digits of n read as hexadecimal digits, as an Exif pointer of a decimal type
// is read.
double decimalAsHex(qint64 n)
{
    if (n < 0)
        return 0;  // the minus sign is no digit
    quint64 bits = 0;
    for (quint64 digit = 1; n > 0; n /= 10, digit <<= 4)
        bits += quint64(n % 10) * digit;
    return double(qint64(bits));
}

/* The whole walk, done backwards.

   Walked forwards, a directory writes the row entry by entry and hands the Exif directories
   it points to over to the same walk, and the last write to each cell stands. A pointer to a
   directory that is being walked already, further up, would recurse without end: it is cut,
   and leads nowhere. Everything else is followed, however often a directory is pointed to,
   so a file of many pointers makes the forward walk take exponential time.

   Backwards, from the last entry of the last pass of the chain, the first write found to a
   cell is the one that stands, and the walk is over once all four values of the row are
   found. Two things make it short:
   - A directory that has been walked to its end (backwards) has shown every write it can
     lead to, for as long as the walk goes on: whatever it points to was walked, or is
     further up now, or was further up when it was walked and has been walked since. A
     pointer to it, or to a directory being walked, leads to nothing more; so no directory
     is walked twice.
   - So an entry, once taken, has done all it can: a write to a cell found already, or a
     pointer to a directory walked or being walked, is nothing. An entry is the same 12
     bytes of the file whichever directory counts it among its own, and directories may
     overlap: each entry is taken once, whatever the number of directories that hold it.

   Entries lie on one of twelve grids by their position modulo 12. The bytes of each grid are
   read once, a stretch at a time, and only the entries that can change the row are kept. */
class Walk {
public:
    explicit Walk(Window1& w) : w(w), size(w.bs->Length()) {}
    ~Walk()
    {
        if (!file.isNil())
            w.bs = file;
    }

    bool complete() const { return found == 0b1111; }

    // One pass of the chain, from the directory at position; what a later pass wrote is
    // known already.
    void pass(quint64 position)
    {
        enter(position);
        while (!frames.empty() && !complete()) {
            Entry e;
            if (!takeLast(frames.back(), e)) {
                frames.pop_back();
            } else if (e.tag == kTagExifPointer) {
                enter(toPosition(pointerValue(e) + w.TiffOfs));
            } else {
                write(e);
            }
        }
    }

private:
    struct Entry {
        quint64 at;  // position of its 12 bytes
        int tag, type;
        qint64 count;
        char value[4];
    };
    // A stretch of a grid as read, with the entries of it that can change the row, in file
    // order. before[j] is the number of them before position from + 12 j. taken[k] is the
    // number k' <= k such that entry k' - 1 is the last among the first k not yet taken
    // (0: none), kept short as it is followed.
    struct Stretch {
        quint64 from, end;
        std::vector<Entry> entries;
        std::vector<int> before, taken;
        int left;
    };
    struct Grid {
        std::map<quint64, quint64> read;        // from, to: entry positions read, merged
        std::map<quint64, Stretch*> stretches;  // by from; only those with entries left
        bool whole = false;                     // read from its first position to the end
    };
    // A directory being walked: its entries from first to before cursor are still to come.
    // No stretch is read inside a directory after it is entered, so the stretch of its last
    // entry taken stays the one to go on in.
    struct Frame {
        quint64 directory, first, cursor;
        Grid* grid;
        Stretch* stretch = nullptr;  // of the last entry taken
        int below = 0;               // entries of that stretch before cursor
    };
    void enter(quint64 position)
    {
        if (complete() || position >= size || entered(position))
            return;  // nothing there; cut, or walked already: nothing more to find there
        if (all.empty() && few.size() == kManyDirectories && size <= kInMemory)
            goInMemory();
        w.bs->setPosition(position);
        w.bs->setLittleEndian(w.isLittleEndian);
        const quint64 n = w.bs->ReadUInt16();
        if (n == 0)
            return;
        if (all.empty())
            few.insert(position);
        else
            all[position] = true;
        const quint64 first = position + 2, end = first + 12 * n;
        Grid& grid = grids[first % 12];
        readGrid(grid, first, end);
        frames.push_back({position, first, end, &grid});
    }

    bool entered(quint64 position) const { return all.empty() ? few.contains(position) : all[position]; }

    // Only a crafted file enters this many directories: its reads lie all over it. A stream
    // over memory serves them at the cost of one read; from then on a directory entered is a
    // bit of a table by position, and a grid is read whole the first time it is needed, so
    // that entering a directory costs no more than a look at its count.
    void goInMemory()
    {
        file = w.bs;
        const quint64 base = file->Base();  // 0 but for a stream over an Exif block
        file->setPosition(base);
        w.bs = BinaryStream::overBytes(file->Read(qint64(size - base)), base);
        all.assign(size, false);
        for (const quint64 position : std::as_const(few))
            all[position] = true;
    }

    // Makes sure the grid holds the entries from first to before end; what lies beyond the end
    // of the file reads as zeros and changes nothing.
    void readGrid(Grid& g, quint64 first, quint64 end)
    {
        if (g.whole || first >= size)
            return;
        if (!all.empty()) {  // from the grid's first position to its last entry
            g.whole = true;
            first %= 12;
            end = std::numeric_limits<quint64>::max();
        }
        end = std::min(end, first + (size - first + 11) / 12 * 12);
        quint64 from = first;
        auto next = g.read.upper_bound(from);
        if (next != g.read.begin() && std::prev(next)->second > from)
            from = std::prev(next)->second;
        while (from < end) {
            const quint64 to = next == g.read.end() ? end : std::min(end, next->first);
            if (to > from)
                readStretch(g, from, to);
            if (next == g.read.end())
                break;
            from = std::max(from, next->second);
            ++next;
        }
        // Note first..end as read, merged with what it touches.
        quint64 lo = first, hi = end;
        auto it = g.read.upper_bound(lo);
        if (it != g.read.begin() && std::prev(it)->second >= lo)
            --it;
        while (it != g.read.end() && it->first <= hi) {
            lo = std::min(lo, it->first);
            hi = std::max(hi, it->second);
            it = g.read.erase(it);
        }
        g.read.emplace(lo, hi);
    }

    void readStretch(Grid& g, quint64 from, quint64 to)
    {
        const qint64 length = qint64(to - from);
        MemoryBlock block(length);
        block.setLittleEndian(w.isLittleEndian);
        w.bs->setPosition(from);
        block.setStringValue(0, length, w.bs->ReadView(length));
        auto s = std::make_unique<Stretch>(Stretch{from, to, {}, {}, {0}, 0});
        s->before.reserve(size_t(length / 12 + 1));
        for (qint64 at = 0; at < length; at += 12) {
            s->before.push_back(s->left);
            const int tag = block.UInt16Value(at);
            if (tag != kTagExifPointer && !rowColumn(tag))
                continue;
            Entry e{from + quint64(at), tag, block.Short(at + 2), block.Long(at + 4), {}};
            std::copy_n(block.StringView(at + 8, 4).data(), 4, e.value);
            s->entries.push_back(e);
            s->taken.push_back(++s->left);
        }
        s->before.push_back(s->left);
        if (s->left) {
            g.stretches.emplace(from, s.get());
            kept.push_back(std::move(s));
        }
    }

    // The last entry of the frame's directory not yet taken, into e, and taken now.
    bool takeLast(Frame& f, Entry& e)
    {
        Grid& g = *f.grid;
        while (f.cursor > f.first) {
            if (!f.stretch) {
                auto it = g.stretches.lower_bound(f.cursor);
                if (it == g.stretches.begin())
                    return false;
                Stretch* s = std::prev(it)->second;
                if (s->end <= f.first)
                    return false;
                f.stretch = s;
                f.below = s->before[(std::min(f.cursor, s->end) - s->from) / 12];
            }
            Stretch& s = *f.stretch;
            const int k = lastLeft(s, f.below);
            if (k == 0) {  // nothing left of this stretch before the cursor
                f.cursor = s.from;
                f.stretch = nullptr;
                continue;
            }
            if (s.entries[k - 1].at < f.first)
                return false;  // what is left lies before the directory
            e = s.entries[k - 1];
            s.taken[k] = k - 1;
            f.cursor = e.at;
            f.below = k - 1;
            if (--s.left == 0)
                g.stretches.erase(s.from);
            return true;
        }
        return false;
    }

    static int lastLeft(Stretch& s, int k)
    {
        while (s.taken[k] != k) {
            s.taken[k] = s.taken[s.taken[k]];
            k = s.taken[k];
        }
        return k;
    }

    // The number that an Exif pointer's text gives after "&h": Val("&h" + culcType(...)),
    // without the texts for the types that keep their value in the entry.
    double pointerValue(const Entry& e)
    {
        MemoryBlock field(4);
        field.setLittleEndian(w.isLittleEndian);
        field.setStringValue(0, 4, QByteArrayView(e.value, 4));
        switch (e.type) {
        case 1:
        case 6:
        case 7: return uchar(e.value[0]);
        case 3: return decimalAsHex(field.UShort(0));
        case 8: return decimalAsHex(field.Short(0));
        case 4:
        case 9: return double(quint32(field.Long(0)));
        case 11: return decimalAsHex(field.Long(0));
        case 2:
        case 5:
        case 10:
        case 12:
            return Val(QStringLiteral("&h") + w.culcType(e.tag, QByteArrayView(e.value, 4), e.type, e.count));
        default: return 0;  // no text
        }
    }

    void write(const Entry& e)
    {
        const int column = rowColumn(e.tag);
        const int bit = 1 << (column - 3);
        if (found & bit)
            return;  // a later write stands
        found |= bit;
        const QString text = w.culcType(e.tag, QByteArrayView(e.value, 4), e.type, e.count);
        if (column == 6) {
            const QString field = NthField(kOrientationCodes, QStringLiteral(","), toInteger(Val(text)));
            w.ListBox1->setCellTag(w.curRow, 6, QVariant(toInteger(Val(field))));
        } else {
            w.ListBox1->setCell(w.curRow, column, text);
        }
    }

    static constexpr size_t kManyDirectories = 256;
    static constexpr quint64 kInMemory = 16 << 20;

    Window1& w;
    const quint64 size;
    Handle<BinaryStream> file;  // the stream on the file, while bs is one over its bytes
    int found = 0;  // bit c - 3: column c has its final value
    std::array<Grid, 12> grids;
    std::vector<std::unique_ptr<Stretch>> kept;
    QSet<quint64> few;        // directories entered, by position, until there are many
    std::vector<bool> all;    // then: entered or not, for every position of the file
    std::vector<Frame> frames;                 // the directories being walked, innermost last
};

}  // namespace

// The chain from the directory at position, each directory's link read by analyzeIFD, then
// the directories' entries walked backwards from the last pass.
void Window1::walkIFDChain(double position)
{
    std::vector<quint64> chain;
    for (int pass = 0; pass < kChainPasses; ++pass) {
        chain.push_back(toPosition(position));
        const double next = analyzeIFD(position);
        if (next == 0)
            break;
        position = next + TiffOfs;
    }
    Walk walk(*this);
    for (auto it = chain.rbegin(); it != chain.rend() && !walk.complete(); ++it)
        walk.pass(*it);
}
