// Writes the seed corpus of the reader's fuzz target into the folder named: camera files in
// both byte orders, bare and in a JPEG, and small files of the layouts that a plain walk takes
// long over (pointers back up, loops in the chain, many pointers to one directory).
// Usage: reader_seeds FOLDER

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

#include "support/TiffBuilder.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2 || !QDir().mkpath(argv[1])) {
        std::fprintf(stderr, "usage: reader_seeds FOLDER\n");
        return 2;
    }
    const QByteArray A = "2001:02:03 04:05:06", B = "2002:03:04 05:06:07", C = "2003:04:05 06:07:08";
    QList<QByteArray> seeds;
    for (bool le : {false, true}) {
        const QByteArray file = camera(le, A, B, C).bytes();
        seeds << file << TiffBuilder::jpeg(file) << QByteArray(250, 'x') + file;

        TiffBuilder loop(le);  // a pointer to its own directory, and a chain back to it
        loop.link(loop.directory(), 34665, 0);
        loop.stored(0, 306, 5, 1, loop.number(1, 4) + loop.number(2, 4));
        loop.entry(0, 274, 3, 1, loop.number(6, 2));
        loop.next(0, 0);
        seeds << loop.bytes();

        TiffBuilder tree(le);  // three pointers to the next level, three levels, up and down
        tree.directory();
        for (int level = 0; level < 3; ++level) {
            for (int i = 0; i < 3; ++i)
                tree.link(level, 34665, level + 1);
            tree.ascii(tree.directory(), 36867 + level % 2, A);
        }
        tree.link(3, 34665, 1);
        tree.next(0, 2);
        seeds << tree.bytes();

        TiffBuilder deep(le);  // two pointers deep in a looping chain
        deep.ascii(deep.directory(), 36867, A);
        deep.link(0, 34665, deep.directory());
        deep.link(1, 34665, deep.directory());
        deep.ascii(2, 36868, B);
        deep.entry(2, 34665, 4, 1, deep.number(8 + 12 * 2, 4));  // into directory 0's entries
        deep.next(0, 0);
        seeds << deep.bytes();
    }
    // A movie: ftyp, then moov with a version 0 movie header, then mdat.
    const auto box = [](const char* type, const QByteArray& body) {
        return QByteArray::fromHex(QByteArray::number(8 + body.size(), 16).rightJustified(8, '0')) + type + body;
    };
    seeds << box("ftyp", QByteArray("isom\0\0\2\0isom", 12))
                 + box("moov", box("mvhd", QByteArray::fromHex("00000000DCEE2F6EDCEE2F6E").leftJustified(100, '\0')))
                 + box("mdat", "data");
    for (int i = 0; i < seeds.size(); ++i)
        writeBytes(QDir(argv[1]).filePath(QStringLiteral("seed%1").arg(i)), seeds[i]);
    return 0;
}
