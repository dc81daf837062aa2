// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"

#include "language.h"

const QList<Command> &allCommands()
{
    const auto text = [](const char *words) { return QString::fromLatin1(words); };
    const auto words = [](const char *list) {
        return QString::fromLatin1(list).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    static const QList<Command> commands{
        {text("services"), {}, Tool::tr("list the social networks"), {}, true, runServices},
        {text("accounts"), {}, Tool::tr("list your accounts"), words("account"), true, runAccounts},
        {text("providers"),
         {},
         Tool::tr("list what connects to the networks"),
         {},
         false,
         runProviders},
        {text("persons"),
         {},
         Tool::tr("list your contacts"),
         words("account limit filter"),
         true,
         runPersons},
        {text("timeline"),
         {},
         Tool::tr("show what is new, newest first"),
         words("account limit before after profile type"),
         true,
         runTimeline},
        {text("show"), text(QT_TRANSLATE_NOOP("Tool", "ID")),
         Tool::tr("show an activity, its comments and its likers"), words("account limit"), true,
         runShow},
        {text("post"), text(QT_TRANSLATE_NOOP("Tool", "TEXT")), Tool::tr("publish a status"),
         words("account"), true, runPost},
        {text("comment"), text(QT_TRANSLATE_NOOP("Tool", "ID TEXT")),
         Tool::tr("comment on an activity"), words("account"), true, runComment},
        {text("like"), text(QT_TRANSLATE_NOOP("Tool", "ID")), Tool::tr("like an activity"),
         words("account"), true, runLike},
        {text("unlike"), text(QT_TRANSLATE_NOOP("Tool", "ID")), Tool::tr("take a like back"),
         words("account"), true, runUnlike},
        {text("likers"), text(QT_TRANSLATE_NOOP("Tool", "ID")),
         Tool::tr("list who likes an activity"), words("account limit filter"), true, runLikers},
        {text("import"),
         text(QT_TRANSLATE_NOOP("Tool", "FILE")),
         Tool::tr("read an ActivityStreams 2.0 archive"),
         {},
         true,
         runImport},
        {text("watch"), {}, Tool::tr("print what comes in, until Ctrl-C"), {}, false, runWatch},
        {text("runners"),
         text(QT_TRANSLATE_NOOP("Tool", "[start] [NAME]")),
         Tool::tr("list the providers on the bus, or have it start them"),
         {},
         false,
         nullptr,
         runRunners},
        {text("check"), text(QT_TRANSLATE_NOOP("Tool", "FILE.so")),
         Tool::tr("tell what a provider keeps and breaks of the contract"), words("post pause"),
         false, nullptr, runCheck},
        {text("new-provider"),
         text(QT_TRANSLATE_NOOP("Tool", "NAME DIR")),
         Tool::tr("write the beginnings of a provider into a new folder"),
         {},
         false,
         nullptr,
         runNewProvider},
    };
    return commands;
}
