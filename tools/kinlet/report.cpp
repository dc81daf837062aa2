// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "report.h"

#include "text.h"

#include <cstdio>

void Report::note(const QString &text) const
{
    const QByteArray line = "kinlet: " + oneLine(text).toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
}

void Report::failure(const QString &text)
{
    note(text);
    failed = true;
}

void Report::failures(const QString &provider, const QList<KinletError> &errors)
{
    for (const KinletError &error : errors) {
        QString text = provider + QStringLiteral(": ") + errorTypeName(error.type());
        if (!error.description().isEmpty())
            text += QStringLiteral(": ") + error.description();
        failure(text);
    }
}

QString errorTypeName(KinletError::Type type)
{
    switch (type) {
    case KinletError::UnknownError:
        return QStringLiteral("UnknownError");
    case KinletError::UnsupportedRequest:
        return QStringLiteral("UnsupportedRequest");
    case KinletError::PostFailed:
        return QStringLiteral("PostFailed");
    case KinletError::AuthenticationFailed:
        return QStringLiteral("AuthenticationFailed");
    case KinletError::NetworkFailed:
        return QStringLiteral("NetworkFailed");
    case KinletError::InvalidRequest:
        return QStringLiteral("InvalidRequest");
    case KinletError::ProviderTimeout:
        return QStringLiteral("ProviderTimeout");
    case KinletError::NotPerformed:
        return QStringLiteral("NotPerformed");
    case KinletError::LikeFailed:
        return QStringLiteral("LikeFailed");
    }
    return QStringLiteral("Error %1").arg(int(type));
}
