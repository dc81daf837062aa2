// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/KinletError>

#include <QString>

/// What the program ends with.
enum ExitCode { Done = 0, EndedWithErrors = 1, WrongUse = 2, NoProvider = 3 };

/// Messages on standard error. Texts of providers may be part of them.
class Report {
public:
    /// Something is worth knowing.
    void note(const QString &text) const;
    /// Something went wrong: the program will end with errors.
    void failure(const QString &text);
    /// A provider's errors, each with the name of its type and its description.
    void failures(const QString &provider, const QList<KinletError> &errors);

    ExitCode exitCode() const { return failed ? EndedWithErrors : Done; }

private:
    bool failed = false;
};

QString errorTypeName(KinletError::Type type);
