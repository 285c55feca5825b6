/*
 * floor_ranges.c - the floor of listing a file whose byte ranges are known: per file one
 * statx for the two file dates, an open, one pread per range, a close; timed from inside.
 *
 * Usage: floor_ranges PLAN    PLAN: one file a line, "path<TAB>offset:count offset:count ..."
 *                             (bench/intake writes it from the reads that listing makes)
 * Prints "files=F reads=R bytes=B seconds=S" (the wall time of the walk alone).
 */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

struct range { long long offset, count; };
struct file { char *path; struct range *ranges; int n; };

int main(int argc, char **argv)
{
    if (argc != 2) { fprintf(stderr, "usage: floor_ranges PLAN\n"); return 2; }
    FILE *f = fopen(argv[1], "r");
    if (!f) { perror(argv[1]); return 1; }
    struct file *files = NULL;
    long nfiles = 0, cap = 0;
    long long biggest = 0;
    char *line = NULL;
    size_t linecap = 0;
    while (getline(&line, &linecap, f) > 0) {
        char *tab = strchr(line, '\t');
        if (!tab) continue;
        *tab = 0;
        if (nfiles == cap) files = realloc(files, sizeof *files * (cap = cap ? 2 * cap : 1024));
        struct file *x = &files[nfiles++];
        x->path = strdup(line);
        x->ranges = NULL;
        x->n = 0;
        for (char *p = tab + 1; *p && *p != '\n';) {
            long long o, c;
            int used;
            if (sscanf(p, "%lld:%lld%n", &o, &c, &used) != 2) break;
            x->ranges = realloc(x->ranges, sizeof *x->ranges * (x->n + 1));
            x->ranges[x->n++] = (struct range){o, c};
            if (c > biggest) biggest = c;
            p += used;
            while (*p == ' ') p++;
        }
    }
    fclose(f);
    char *buf = malloc(biggest > 0 ? (size_t)biggest : 1);
    long reads = 0;
    long long bytes = 0;
    struct timespec t0, t1;
    clock_gettime(CLOCK_MONOTONIC, &t0);
    for (long i = 0; i < nfiles; i++) {
        struct statx sx;
        statx(AT_FDCWD, files[i].path, AT_STATX_SYNC_AS_STAT,
              STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_BTIME, &sx);
        int fd = open(files[i].path, O_RDONLY | O_CLOEXEC);
        if (fd < 0) continue;
        for (int r = 0; r < files[i].n; r++) {
            ssize_t n = pread(fd, buf, (size_t)files[i].ranges[r].count, files[i].ranges[r].offset);
            reads++;
            bytes += n > 0 ? n : 0;
        }
        close(fd);
    }
    clock_gettime(CLOCK_MONOTONIC, &t1);
    printf("files=%ld reads=%ld bytes=%lld seconds=%.6f\n", nfiles, reads, bytes,
           (double)(t1.tv_sec - t0.tv_sec) + (double)(t1.tv_nsec - t0.tv_nsec) * 1e-9);
    return 0;
}
