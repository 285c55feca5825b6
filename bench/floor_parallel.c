/*
 * floor_parallel.c - the floor of listing, timed from inside: per file one statx for the
 * two file dates (as listing needs them) and then floor.c's reads of the three Exif dates,
 * on T threads that take the files in list order (T = 1: one read after the other).
 *
 * Built by bench/intake from floor.c, whose state is made thread-local first:
 *   sed 's/^static \(int be\|long files\|int wmode\|unsigned char head\)/static __thread \1/' \
 *       floor.c > floor_tls.c
 *   gcc -O2 -pthread -I. -o floor_parallel floor_parallel.c
 *
 * Usage: floor_parallel [-t T] [-n] LIST     LIST: one path a line; -n: no statx
 * Prints "files=F seconds=S threads=T" (the wall time of the walk alone, no start-up).
 */
#define _GNU_SOURCE
#define main floor_main
#include "floor_tls.c"
#undef main

#include <pthread.h>
#include <stdlib.h>
#include <time.h>

static char **paths;
static long npaths, next_path;
static int with_statx = 1;

static void *walk(void *unused)
{
    (void)unused;
    long i;
    while ((i = __atomic_fetch_add(&next_path, 1, __ATOMIC_RELAXED)) < npaths) {
        if (with_statx) {
            struct statx sx;
            statx(AT_FDCWD, paths[i], AT_STATX_SYNC_AS_STAT,
                  STATX_TYPE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_BTIME, &sx);
        }
        one(paths[i]);
    }
    return NULL;
}

int main(int argc, char **argv)
{
    int threads = 1, i = 1;
    for (; i < argc - 1; i++) {
        if (!strcmp(argv[i], "-t") && i + 1 < argc - 1) threads = atoi(argv[++i]);
        else if (!strcmp(argv[i], "-n")) with_statx = 0;
        else break;
    }
    if (i != argc - 1 || threads < 1) {
        fprintf(stderr, "usage: floor_parallel [-t T] [-n] LIST\n");
        return 2;
    }
    FILE *f = fopen(argv[i], "r");
    if (!f) { perror(argv[i]); return 1; }
    char line[4096];
    long cap = 0;
    while (fgets(line, sizeof line, f)) {
        size_t n = strlen(line);
        while (n && (line[n - 1] == '\n' || line[n - 1] == '\r')) line[--n] = 0;
        if (!n) continue;
        if (npaths == cap) paths = realloc(paths, sizeof *paths * (cap = cap ? 2 * cap : 1024));
        paths[npaths++] = strdup(line);
    }
    fclose(f);

    struct timespec t0, t1;
    pthread_t tid[256];
    if (threads > 256) threads = 256;
    clock_gettime(CLOCK_MONOTONIC, &t0);
    for (int t = 0; t < threads; t++) pthread_create(&tid[t], NULL, walk, NULL);
    for (int t = 0; t < threads; t++) pthread_join(tid[t], NULL);
    clock_gettime(CLOCK_MONOTONIC, &t1);
    printf("files=%ld seconds=%.6f threads=%d\n", npaths,
           (double)(t1.tv_sec - t0.tv_sec) + (double)(t1.tv_nsec - t0.tv_nsec) * 1e-9, threads);
    return 0;
}
