/* SPDX-License-Identifier: Apache-2.0 */
/* Version of the library; the build reads it from here. */
#ifndef TAVO_VERSION_H
#define TAVO_VERSION_H

#define TAVO_VERSION_MAJOR 0
#define TAVO_VERSION_MINOR 1
#define TAVO_VERSION_PATCH 0
#define TAVO_VERSION "0.1.0"

#endif
