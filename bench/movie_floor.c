/*
 * movie_floor [-v] -@ LIST: the floor for reading a movie's two header dates, for the files
 * named in LIST (one a line). Per file: one statx for the file dates; open; pread the first
 * 256 bytes; from box to box at the top level by their sizes (a pread of the 16-byte header
 * of each box that the bytes at hand do not hold), to 'moov'; pread the first 128 bytes of
 * its body, and 'mvhd' from there (further children by their headers); close. Never reads
 * the media data. Prints "files=F dated=D seconds=S" (-v: one line per file).
 */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

static uint64_t be(const unsigned char *p, int n)
{
    uint64_t v = 0;
    for (int i = 0; i < n; ++i)
        v = v << 8 | p[i];
    return v;
}

/* The box at `at` (end of its parent: `end`): type and size into *type and *size, the header
   length returned; 0 for a box that cannot be read. head/headAt/headLen: bytes at hand. */
static int boxAt(int fd, uint64_t at, uint64_t end, const unsigned char *head, uint64_t headAt, size_t headLen,
                 uint32_t *type, uint64_t *size)
{
    unsigned char b[16];
    if (end - at < 8)
        return 0;
    if (at >= headAt && at - headAt + 16 <= headLen)
        memcpy(b, head + (at - headAt), 16);
    else if (pread(fd, b, 16, (off_t)at) < 8)
        return 0;
    *type = (uint32_t)be(b + 4, 4);
    *size = be(b, 4);
    int header = 8;
    if (*size == 1) {
        *size = be(b + 8, 8);
        header = 16;
    } else if (*size == 0) {
        *size = end - at;
    }
    if (*size < (uint64_t)header || *size > end - at)
        return 0;
    return header;
}

/* The two times of the movie header, or 0 for none. */
static int readMovie(const char *path, uint64_t *created, uint64_t *modified)
{
    struct statx sx;
    if (statx(AT_FDCWD, path, 0, STATX_BTIME | STATX_MTIME | STATX_SIZE, &sx) != 0)
        return 0;
    int fd = open(path, O_RDONLY);
    if (fd < 0)
        return 0;
    unsigned char head[256];
    const ssize_t got = pread(fd, head, sizeof head, 0);
    const uint64_t size = sx.stx_size;
    int found = 0;
    uint64_t at = 0, boxSize;
    uint32_t type;
    for (int n = 0; got > 0 && n < 4096; ++n) {
        const int header = boxAt(fd, at, size, head, 0, (size_t)got, &type, &boxSize);
        if (!header)
            break;
        if (type == 0x6D6F6F76) { /* moov */
            unsigned char body[128];
            const uint64_t from = at + (uint64_t)header, to = at + boxSize;
            const ssize_t b = pread(fd, body, sizeof body, (off_t)from);
            for (uint64_t child = from, cSize; b > 0 && child < to; child += cSize) {
                const int h = boxAt(fd, child, to, body, from, (size_t)b, &type, &cSize);
                if (!h)
                    break;
                if (type == 0x6D766864) { /* mvhd */
                    unsigned char t[20];
                    const uint64_t times = child + (uint64_t)h;
                    if (times + 20 <= from + (uint64_t)b)
                        memcpy(t, body + (times - from), sizeof t);
                    else if (pread(fd, t, sizeof t, (off_t)times) != sizeof t)
                        break;
                    {
                        const int w = t[0] ? 8 : 4;
                        *created = be(t + 4, w);
                        *modified = be(t + 4 + w, w);
                        found = 1;
                    }
                    break;
                }
            }
            break;
        }
        at += boxSize;
    }
    close(fd);
    return found;
}

int main(int argc, char **argv)
{
    int verbose = 0;
    const char *list = NULL;
    for (int i = 1; i < argc; ++i) {
        if (!strcmp(argv[i], "-v"))
            verbose = 1;
        else if (!strcmp(argv[i], "-@") && i + 1 < argc)
            list = argv[++i];
    }
    FILE *f = list ? fopen(list, "r") : NULL;
    if (!f) {
        fprintf(stderr, "usage: movie_floor [-v] -@ LIST\n");
        return 2;
    }
    char path[4096];
    long files = 0, dated = 0;
    struct timespec a, b;
    clock_gettime(CLOCK_MONOTONIC, &a);
    while (fgets(path, sizeof path, f)) {
        path[strcspn(path, "\n")] = 0;
        uint64_t c = 0, m = 0;
        ++files;
        if (readMovie(path, &c, &m)) {
            ++dated;
            if (verbose)
                printf("%s %llu %llu\n", path, (unsigned long long)c, (unsigned long long)m);
        }
    }
    clock_gettime(CLOCK_MONOTONIC, &b);
    printf("files=%ld dated=%ld seconds=%.6f\n", files, dated, (double)(b.tv_sec - a.tv_sec) + (b.tv_nsec - a.tv_nsec) / 1e9);
    fclose(f);
    return 0;
}
