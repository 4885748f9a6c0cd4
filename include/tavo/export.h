/* SPDX-License-Identifier: Apache-2.0 */
/* Marks what the shared library exports; everything else stays hidden. Inside an
   exported class TAVO_HIDDEN takes out what only the library itself calls. */
#ifndef TAVO_EXPORT_H
#define TAVO_EXPORT_H

#if defined(__GNUC__)
#define TAVO_EXPORT __attribute__((visibility("default")))
#define TAVO_HIDDEN __attribute__((visibility("hidden")))
#else
#define TAVO_EXPORT
#define TAVO_HIDDEN
#endif

#endif
