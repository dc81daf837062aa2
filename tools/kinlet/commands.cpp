// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

const QList<Command> &allCommands()
{
    const auto text = [](const char *words) { return QString::fromLatin1(words); };
    const auto words = [](const char *list) {
        return QString::fromLatin1(list).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    static const QList<Command> commands{
        {text("services"), {}, text("list the social networks"), {}, true, runServices},
        {text("accounts"), {}, text("list your accounts"), words("account"), true, runAccounts},
        {text("providers"),
         {},
         text("list what connects to the networks"),
         {},
         false,
         runProviders},
        {text("persons"),
         {},
         text("list your contacts"),
         words("account limit filter"),
         true,
         runPersons},
        {text("timeline"),
         {},
         text("show what is new, newest first"),
         words("account limit before after profile type"),
         true,
         runTimeline},
        {text("show"), text("ID"), text("show an activity, its comments and its likers"),
         words("account limit"), true, runShow},
        {text("post"), text("TEXT"), text("publish a status"), words("account"), true, runPost},
        {text("comment"), text("ID TEXT"), text("comment on an activity"), words("account"), true,
         runComment},
        {text("like"), text("ID"), text("like an activity"), words("account"), true, runLike},
        {text("unlike"), text("ID"), text("take a like back"), words("account"), true, runUnlike},
        {text("likers"), text("ID"), text("list who likes an activity"),
         words("account limit filter"), true, runLikers},
        {text("import"),
         text("FILE"),
         text("read an ActivityStreams 2.0 archive"),
         {},
         true,
         runImport},
        {text("watch"), {}, text("print what comes in, until Ctrl-C"), {}, false, runWatch},
        {text("runners"),
         text("[start] [NAME]"),
         text("list the providers on the bus, or have it start them"),
         {},
         false,
         nullptr,
         runRunners},
        {text("check"), text("FILE.so"),
         text("tell what a provider keeps and breaks of the contract"), words("post pause"), false,
         nullptr, runCheck},
        {text("new-provider"),
         text("NAME DIR"),
         text("write the beginnings of a provider into a new folder"),
         {},
         false,
         nullptr,
         runNewProvider},
    };
    return commands;
}
