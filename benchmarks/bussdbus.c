// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "bussdbus.h"

#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <systemd/sd-bus.h>

struct answer {
    const void *bytes;
    size_t size;
};

struct sd_exchange {
    sd_bus *bus;
    const char *service;
    int number;
    int answered;
};

static int on_request(sd_bus_message *call, void *data, sd_bus_error *error)
{
    const struct answer *answer = data;
    const void *request;
    size_t size;
    int type;
    const char *id;
    sd_bus_message *signal = NULL;
    (void)error;
    int r = sd_bus_message_read(call, "is", &type, &id);
    if (r >= 0)
        r = sd_bus_message_read_array(call, 'y', &request, &size);
    if (r >= 0)
        r = sd_bus_reply_method_return(call, "");
    if (r >= 0)
        r = sd_bus_message_new_signal(sd_bus_message_get_bus(call), &signal, EXCHANGE_PATH,
                                      EXCHANGE_INTERFACE, "requestFinished");
    if (r >= 0)
        r = sd_bus_message_set_destination(signal, sd_bus_message_get_sender(call));
    if (r >= 0)
        r = sd_bus_message_append(signal, "is", type, id);
    if (r >= 0)
        r = sd_bus_message_append_array(signal, 'y', answer->bytes, answer->size);
    if (r >= 0)
        r = sd_bus_message_append(signal, "ay", 4, 0, 0, 0, 0);
    if (r >= 0)
        r = sd_bus_send(NULL, signal, NULL);
    sd_bus_message_unref(signal);
    return r < 0 ? r : 1;
}

static const sd_bus_vtable runner[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("performRequest", "isay", "", on_request, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

/* Works on the bus until *done is at least wanted. */
static int work(sd_bus *bus, const int *done, int wanted)
{
    int r = 0;
    while (r >= 0 && *done < wanted) {
        r = sd_bus_process(bus, NULL);
        if (r == 0)
            r = sd_bus_wait(bus, UINT64_MAX);
    }
    return r;
}

int sd_exchange_serve(const char *service, const void *bytes, size_t size)
{
    struct answer answer = {bytes, size};
    const int never = 0;
    sd_bus *bus = NULL;
    int r = sd_bus_open_user(&bus);
    if (r >= 0)
        r = sd_bus_add_object_vtable(bus, NULL, EXCHANGE_PATH, EXCHANGE_INTERFACE, runner, &answer);
    if (r >= 0)
        r = sd_bus_request_name(bus, service, 0);
    if (r >= 0)
        r = work(bus, &never, 1);
    sd_bus_unref(bus);
    return r;
}

static int on_finished(sd_bus_message *signal, void *data, sd_bus_error *error)
{
    struct sd_exchange *exchange = data;
    const void *answer;
    size_t size;
    int type;
    const char *id;
    (void)error;
    int r = sd_bus_message_read(signal, "is", &type, &id);
    if (r >= 0)
        r = sd_bus_message_read_array(signal, 'y', &answer, &size);
    if (r >= 0)
        ++exchange->answered;
    return r;
}

static int on_reply(sd_bus_message *reply, void *data, sd_bus_error *error)
{
    (void)data;
    (void)error;
    return sd_bus_message_is_method_error(reply, NULL) ? -EIO : 0;
}

struct sd_exchange *sd_exchange_new(const char *service)
{
    struct sd_exchange *exchange = calloc(1, sizeof(*exchange));
    exchange->service = service;
    int r = sd_bus_open_user(&exchange->bus);
    if (r >= 0)
        r = sd_bus_match_signal(exchange->bus, NULL, service, EXCHANGE_PATH, EXCHANGE_INTERFACE,
                                "requestFinished", on_finished, exchange);
    if (r < 0) {
        fprintf(stderr, "sd-bus has no bus: %d\n", r);
        exit(EXIT_FAILURE);
    }
    return exchange;
}

void sd_exchange_free(struct sd_exchange *exchange)
{
    sd_bus_unref(exchange->bus);
    free(exchange);
}

static int send_request(struct sd_exchange *exchange, const void *request, size_t size)
{
    char id[39];
    sd_bus_message *call = NULL;
    int r = sd_bus_message_new_method_call(exchange->bus, &call, exchange->service, EXCHANGE_PATH,
                                           EXCHANGE_INTERFACE, "performRequest");
    snprintf(id, sizeof(id), "%038d", ++exchange->number);
    if (r >= 0)
        r = sd_bus_message_append(call, "is", 5, id);
    if (r >= 0)
        r = sd_bus_message_append_array(call, 'y', request, size);
    if (r >= 0)
        r = sd_bus_call_async(exchange->bus, NULL, call, on_reply, exchange, 0);
    sd_bus_message_unref(call);
    return r;
}

int sd_exchange_perform(struct sd_exchange *exchange, int times, const void *request, size_t size)
{
    int r = 0;
    exchange->answered = 0;
    for (int i = 0; r >= 0 && i < times; ++i)
        r = send_request(exchange, request, size);
    return r < 0 ? r : work(exchange->bus, &exchange->answered, times);
}
