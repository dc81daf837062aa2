// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commandline.h"

#include "commands.h"
#include "language.h"
#include "nearest.h"
#include "times.h"

#include <Kinlet/SocialNetworkPerson>

#include <QCommandLineParser>
#include <QFileInfo>

#include <cmath>

const QString allAccounts = QStringLiteral("all");

namespace {

struct OptionText {
    const char *name;
    const char *value;
    const char *description;
};

constexpr OptionText optionTexts[] = {
    {"account", QT_TRANSLATE_NOOP("Tool", "ID"),
     QT_TRANSLATE_NOOP("Tool", "only this account, repeatable; \"all\" to post with every one")},
    {"limit", QT_TRANSLATE_NOOP("Tool", "N"),
     QT_TRANSLATE_NOOP("Tool", "at most so many entries (timeline: 20, comments of show: 100)")},
    {"before", QT_TRANSLATE_NOOP("Tool", "TIME"),
     QT_TRANSLATE_NOOP("Tool", "only what is older: 2026-03-12 or 2026-03-12T14:30, Z for UTC")},
    {"after", QT_TRANSLATE_NOOP("Tool", "TIME"), QT_TRANSLATE_NOOP("Tool", "only what is newer")},
    {"filter", QT_TRANSLATE_NOOP("Tool", "PROPERTY=REGEXP"),
     QT_TRANSLATE_NOOP("Tool", "only persons whose property matches, repeatable")},
    {"profile", QT_TRANSLATE_NOOP("Tool", "PERSON"),
     QT_TRANSLATE_NOOP("Tool", "only what the person with this id has published")},
    {"type", QT_TRANSLATE_NOOP("Tool", "TYPE"),
     QT_TRANSLATE_NOOP("Tool", "status (if not given), comment, message or any")},
    {"post", nullptr, QT_TRANSLATE_NOOP("Tool", "check: also post and like, which others may see")},
    {"pause", QT_TRANSLATE_NOOP("Tool", "SECONDS"),
     QT_TRANSLATE_NOOP("Tool", "check: how long a call may hold up the event loop (0.2)")},
    {"json", nullptr, QT_TRANSLATE_NOOP("Tool", "one JSON object a line, with every property")},
    {"absolute", nullptr, QT_TRANSLATE_NOOP("Tool", "exact times instead of relative ones")},
    {"in-process", nullptr, QT_TRANSLATE_NOOP("Tool", "load provider plug-ins into this process")},
    {"bus", nullptr, QT_TRANSLATE_NOOP("Tool", "use the providers on the session bus")},
    {"plugin-path", QT_TRANSLATE_NOOP("Tool", "DIR"),
     QT_TRANSLATE_NOOP("Tool", "load provider plug-ins from this folder; means --in-process")},
    {"timeout", QT_TRANSLATE_NOOP("Tool", "SECONDS"),
     QT_TRANSLATE_NOOP("Tool", "how long providers may take to start (10)")},
    {"wait", QT_TRANSLATE_NOOP("Tool", "SECONDS"),
     QT_TRANSLATE_NOOP("Tool", "how long to wait for answers (10)")},
    {"help", nullptr, QT_TRANSLATE_NOOP("Tool", "print this text")},
    {"version", nullptr, QT_TRANSLATE_NOOP("Tool", "print the version")},
};

QString fromLatin(const char *text)
{
    return QString::fromLatin1(text);
}

QStringList optionNames()
{
    QStringList names;
    for (const OptionText &option : optionTexts)
        names.append(QStringLiteral("--") + fromLatin(option.name));
    return names;
}

// What every command takes.
const QStringList generalOptions{
    QStringLiteral("json"), QStringLiteral("absolute"),    QStringLiteral("in-process"),
    QStringLiteral("bus"),  QStringLiteral("plugin-path"), QStringLiteral("timeout"),
    QStringLiteral("wait"), QStringLiteral("help"),        QStringLiteral("version"),
};

QString shownArguments(const Command &command)
{
    return command.arguments.isEmpty() ? QString() : Tool::tr(qUtf8Printable(command.arguments));
}

QString entry(const QString &term, const QString &description)
{
    return QStringLiteral("  %1  %2\n").arg(term, -26).arg(description);
}

QString helpText()
{
    QString text = Tool::tr("Usage: kinlet COMMAND [ARGUMENT...] [OPTION...]\n\n"
                            "Social networks on the command line.\n\nCommands:\n");
    for (const Command &command : allCommands())
        text += entry(QString(command.name + QLatin1Char(' ') + shownArguments(command)).trimmed(),
                      command.description);
    text += Tool::tr("\nOptions:\n");
    for (const OptionText &option : optionTexts) {
        const QString value = option.value ? QLatin1Char(' ') + Tool::tr(option.value) : QString();
        text += entry(QStringLiteral("--") + fromLatin(option.name) + value,
                      Tool::tr(option.description));
    }
    text += Tool::tr("\nA TEXT that is - is read from standard input; one that begins "
                     "with a dash goes after --.\n\nExit codes:\n");
    text += entry(QStringLiteral("0"), Tool::tr("done"));
    text +=
        entry(QStringLiteral("1"), Tool::tr("ended with errors; what did come has been printed"));
    text += entry(QStringLiteral("2"), Tool::tr("wrong use"));
    text += entry(QStringLiteral("3"), Tool::tr("no provider"));
    text += Tool::tr("\nEnvironment:\n");
    text += entry(QStringLiteral("KINLET_USE_DBUS"),
                  Tool::tr("a value with a 0 in it means --in-process, any other --bus"));
    text += entry(QStringLiteral("KINLET_PLUGIN_PATH"),
                  Tool::tr("the folder of the provider plug-ins"));
    text += entry(QStringLiteral("COLUMNS"), Tool::tr("the width to wrap lines at"));
    text += entry(QStringLiteral("NO_COLOR"),
                  Tool::tr("if not empty, no colours, not even on a terminal"));
    return text;
}

QString parseMistake(const QCommandLineParser &parser)
{
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty())
        return parser.errorText();
    const QString typed = QStringLiteral("--") + unknown.first();
    return Tool::tr("unknown option \"%1\"").arg(typed) + didYouMean(typed, optionNames());
}

const Command *findCommand(const QString &name, QString &mistake)
{
    QStringList names;
    for (const Command &command : allCommands()) {
        if (command.name == name)
            return &command;
        names.append(command.name);
    }
    mistake = Tool::tr("unknown command \"%1\"").arg(name)
        + didYouMean(name, names,
                     Tool::tr("; the commands are %1").arg(names.join(QStringLiteral(", "))));
    return nullptr;
}

QString optionMistake(const QCommandLineParser &parser, const Command &command)
{
    const QStringList given = parser.optionNames();
    for (const QString &name : given) {
        if (generalOptions.contains(name) || command.options.contains(name))
            continue;
        const QString fitting = command.options.join(QStringLiteral(", --"));
        return Tool::tr("%1 does not take --%2").arg(command.name, name)
            + (fitting.isEmpty() ? QString() : Tool::tr("; it takes --%1").arg(fitting));
    }
    return QString();
}

QString argumentMistake(const CommandLine &line)
{
    const QStringList expected =
        line.command->arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const int most = int(expected.size());
    const int least = most - int(line.command->arguments.count(QLatin1Char('[')));
    if (line.arguments.size() >= least && line.arguments.size() <= most)
        return QString();
    const QString shown = shownArguments(*line.command);
    const QString usage = QStringLiteral("kinlet %1 %2").arg(line.command->name, shown).trimmed();
    if (line.arguments.size() < least)
        return Tool::tr("%1 is missing: %2")
            .arg(shown.split(QLatin1Char(' ')).value(int(line.arguments.size())), usage);
    const bool text = line.command->arguments.endsWith(QStringLiteral("TEXT"));
    return Tool::tr("too many arguments, from \"%1\" on: %2%3")
        .arg(line.arguments[most], usage, text ? Tool::tr(" (put the text in quotes)") : QString());
}

QString readSeconds(const QCommandLineParser &parser, const QString &option, int &milliseconds)
{
    if (!parser.isSet(option))
        return QString();
    bool valid = false;
    const double seconds = parser.value(option).toDouble(&valid);
    if (!valid || !(seconds >= 0 && seconds <= 1000000))
        return Tool::tr("--%1 takes a number of seconds, not \"%2\"")
            .arg(option, parser.value(option));
    milliseconds = int(std::lround(seconds * 1000));
    return QString();
}

QString readTime(const QCommandLineParser &parser, const QString &option, QDateTime &time)
{
    if (!parser.isSet(option))
        return QString();
    time = parsedTime(parser.value(option));
    if (time.isValid())
        return QString();
    return Tool::tr("--%1 takes a time like 2026-03-12 or 2026-03-12T14:30, not \"%2\"")
        .arg(option, parser.value(option));
}

QString readFilter(const QString &value, QList<QPair<QString, QRegExp>> &filters)
{
    static const QStringList properties{
        SocialGenericData::Id,
        SocialGenericData::Description,
        SocialGenericData::ParentAccount,
        SocialNetworkPerson::ScreenName,
        SocialNetworkPerson::FirstName,
        SocialNetworkPerson::LastName,
        SocialNetworkPerson::AvatarList,
        SocialNetworkPerson::Status,
        SocialNetworkPerson::StatusChangeTime,
        SocialNetworkPerson::AboutMe,
        SocialNetworkPerson::Relationship,
        SocialNetworkPerson::ProfileLink,
        SocialNetworkPerson::PhoneNumber,
        SocialNetworkPerson::EmailAddresses,
        SocialNetworkPerson::Websites,
        SocialNetworkPerson::Birthday,
    };
    const int equals = int(value.indexOf(QLatin1Char('=')));
    if (equals < 1)
        return Tool::tr("--filter takes PROPERTY=REGEXP, not \"%1\"").arg(value);
    const QString property = value.left(equals);
    if (!properties.contains(property))
        return Tool::tr("persons have no property \"%1\"").arg(property)
            + didYouMean(property, properties,
                         Tool::tr("; they have %1").arg(properties.join(QStringLiteral(", "))));
    const QRegExp pattern(value.mid(equals + 1), Qt::CaseInsensitive);
    if (!pattern.isValid())
        return Tool::tr("\"%1\" is not a regular expression: %2")
            .arg(pattern.pattern(), pattern.errorString());
    filters.append({property, pattern});
    return QString();
}

QString readType(const QString &value, SocialActivity::Type &type)
{
    static const QStringList names{QStringLiteral("status"), QStringLiteral("comment"),
                                   QStringLiteral("message"), QStringLiteral("any")};
    const int index = int(names.indexOf(value));
    if (index < 0)
        return Tool::tr("unknown type \"%1\"").arg(value)
            + didYouMean(value, names,
                         Tool::tr("; the types are %1").arg(names.join(QStringLiteral(", "))));
    type = SocialActivity::Type(SocialActivity::Status + index);
    return QString();
}

QString readLimit(const QString &value, int &limit)
{
    bool valid = false;
    limit = value.toInt(&valid);
    if (valid && limit > 0)
        return QString();
    return Tool::tr("--limit takes a number from 1 on, not \"%1\"").arg(value);
}

QString readSource(const QCommandLineParser &parser, CommandLine &line)
{
    const bool bus = parser.isSet(QStringLiteral("bus"));
    const bool path = parser.isSet(QStringLiteral("plugin-path"));
    if (bus && (path || parser.isSet(QStringLiteral("in-process"))))
        return Tool::tr("--bus does not go with %1")
            .arg(path ? QStringLiteral("--plugin-path") : QStringLiteral("--in-process"));
    if (bus)
        line.source = Source::Bus;
    else if (path || parser.isSet(QStringLiteral("in-process")))
        line.source = Source::InProcess;
    if (!path)
        return QString();
    const QFileInfo folder(parser.value(QStringLiteral("plugin-path")));
    if (!folder.isDir())
        return Tool::tr("--plugin-path: there is no folder \"%1\"").arg(folder.filePath());
    line.pluginPath = folder.absoluteFilePath();
    return QString();
}

// The first mistake in the values, or a null text.
QString readValues(const QCommandLineParser &parser, CommandLine &line)
{
    const auto value = [&](const char *name) { return parser.value(fromLatin(name)); };
    const auto isSet = [&](const char *name) { return parser.isSet(fromLatin(name)); };
    line.json = isSet("json");
    line.absolute = isSet("absolute");
    line.post = isSet("post");
    line.accounts = parser.values(QStringLiteral("account"));
    line.profile = value("profile");
    QStringList mistakes{
        isSet("limit") ? readLimit(value("limit"), line.limit) : QString(),
        isSet("type") ? readType(value("type"), line.type) : QString(),
        readTime(parser, QStringLiteral("before"), line.before),
        readTime(parser, QStringLiteral("after"), line.after),
        readSeconds(parser, QStringLiteral("timeout"), line.startMilliseconds),
        readSeconds(parser, QStringLiteral("wait"), line.waitMilliseconds),
        readSeconds(parser, QStringLiteral("pause"), line.pauseMilliseconds),
        readSource(parser, line),
    };
    const QStringList filters = parser.values(QStringLiteral("filter"));
    for (const QString &filter : filters)
        mistakes.append(readFilter(filter, line.filters));
    mistakes.removeAll(QString());
    return mistakes.value(0);
}

}

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionText &option : optionTexts) {
        QStringList names(fromLatin(option.name));
        if (names.first() == QLatin1String("help"))
            names.append(QStringLiteral("h"));
        QCommandLineOption known(names);
        if (option.value)
            known.setValueName(fromLatin(option.value));
        parser.addOption(known);
    }
    CommandLine line;
    if (!parser.parse(QStringList(QStringLiteral("kinlet")) + arguments)) {
        line.mistake = parseMistake(parser);
        return line;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        line.information = helpText();
        return line;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        line.information = QStringLiteral("kinlet " KINLET_CLI_VERSION "\n");
        return line;
    }
    line.arguments = parser.positionalArguments();
    if (line.arguments.isEmpty()) {
        line.mistake = Tool::tr("no command was given");
        return line;
    }
    line.command = findCommand(line.arguments.takeFirst(), line.mistake);
    if (line.command)
        line.mistake = optionMistake(parser, *line.command);
    if (line.mistake.isEmpty())
        line.mistake = argumentMistake(line);
    if (line.mistake.isEmpty())
        line.mistake = readValues(parser, line);
    return line;
}
