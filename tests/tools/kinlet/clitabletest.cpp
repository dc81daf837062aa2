// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "output.h"
#include "table.h"

#include <QTemporaryFile>
#include <QTest>

#include <unistd.h>

namespace {

// What the table prints to standard output, which is a file meanwhile.
QStringList printed(const Table &table, int columns)
{
    QTemporaryFile file;
    if (!file.open())
        qFatal("No file");
    qputenv("COLUMNS", QByteArray::number(columns));
    const int before = dup(STDOUT_FILENO);
    dup2(file.handle(), STDOUT_FILENO);
    Output out;
    table.print(out);
    const bool whole = out.flush();
    dup2(before, STDOUT_FILENO);
    close(before);
    qunsetenv("COLUMNS");
    if (!whole)
        qFatal("Not written");
    file.seek(0);
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list)
        result.append(QString::fromUtf8(text));
    return result;
}

}

class CliTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnsAreAligned();
    void cellsAreWrapped();
    void lastColumnStaysWhole();
    void cellsAreHarmless();
    void emptyCellsLeaveNoBlanksBehind();
};

void CliTableTest::columnsAreAligned()
{
    Table table(texts({"NAME", "ID"}));
    QVERIFY(table.isEmpty());
    table.addRow(texts({"Ada", "1"}));
    table.addRow(texts({"\u4f60\u597d", "2"}));
    table.addRow(texts({"\u05e9\u05dc", "3"}));
    table.addRow(texts({"Robert", "4"}));
    QVERIFY(!table.isEmpty());
    QCOMPARE(printed(table, 0),
             texts({"NAME    ID", "Ada     1", "\u4f60\u597d    2",
                    "\u2068\u05e9\u05dc\u2069      3", "Robert  4"}));
}

void CliTableTest::cellsAreWrapped()
{
    Table table(texts({"NAME", "STATUS", "ID"}));
    table.addRow(texts({"Ada", "one two three four", "1"}));
    QCOMPARE(printed(table, 20),
             texts({"NAME  STATUS      ID", "Ada   one two     1", "      three four"}));
}

void CliTableTest::lastColumnStaysWhole()
{
    Table table(texts({"NAME", "ID"}));
    const QString id = QString(40, QLatin1Char('x'));
    table.addRow({QStringLiteral("Ada Lovelace"), id});
    QCOMPARE(printed(table, 20),
             QStringList({QStringLiteral("NAME    ID"), QStringLiteral("Ada     ") + id,
                          QStringLiteral("Lovela"), QStringLiteral("ce")}));
}

void CliTableTest::cellsAreHarmless()
{
    Table table(texts({"NAME"}));
    table.addRow(texts({"a\033[2J\nb"}));
    QCOMPARE(printed(table, 0), texts({"NAME", "a\u241b[2J b"}));
}

void CliTableTest::emptyCellsLeaveNoBlanksBehind()
{
    Table table(texts({"NAME", "STATUS", "ID"}));
    table.addRow(texts({"Ada", "", ""}));
    table.addRow(texts({"", "", "7"}));
    QCOMPARE(printed(table, 0), texts({"NAME  STATUS  ID", "Ada", "              7"}));
}

QTEST_GUILESS_MAIN(CliTableTest)
#include "clitabletest.moc"
