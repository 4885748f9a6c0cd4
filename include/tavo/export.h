/* Marks what the shared library exports; everything else stays hidden. */
#ifndef TAVO_EXPORT_H
#define TAVO_EXPORT_H

#if defined(__GNUC__)
#define TAVO_EXPORT __attribute__((visibility("default")))
#else
#define TAVO_EXPORT
#endif

#endif
