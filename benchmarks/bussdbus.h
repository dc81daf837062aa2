// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#define EXCHANGE_SERVICE "com.orvane.exchange"
#define EXCHANGE_PATH "/exchange"
#define EXCHANGE_INTERFACE "com.orvane.exchange.runner"

/* Answers every request with these bytes. Returns a negative error number when it cannot go on. */
int sd_exchange_serve(const char *service, const void *answer, size_t size);

struct sd_exchange;

/* A client of that service; ends the process if there is none. */
struct sd_exchange *sd_exchange_new(const char *service);
void sd_exchange_free(struct sd_exchange *exchange);
/* Sends the request that many times at once and waits for as many answers. */
int sd_exchange_perform(struct sd_exchange *exchange, int times, const void *request, size_t size);

#ifdef __cplusplus
}
#endif
