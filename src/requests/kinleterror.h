// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "kinletexport.h"

#include <QMetaType>
#include <QString>

#include <memory>

class KinletErrorPrivate;
class QDataStream;

/// What went wrong in a request: a type for programs and a description for people.
class KINLET_EXPORT KinletError {
public:
    /// The numbers are part of the stream form. Providers may report others than those named here.
    enum Type : int {
        /// Anything else: the description tells more.
        UnknownError = 0,
        /// The provider does not handle requests of this kind.
        UnsupportedRequest = 1,
        /// The post was not published.
        PostFailed = 2,
        /// The network refused the account's credentials.
        AuthenticationFailed = 3,
        /// The network could not be reached, or broke off.
        NetworkFailed = 4,
        /// The request makes no sense to the provider: an unknown id, an empty text.
        InvalidRequest = 5,
        /// A provider did not answer in time; the results are those of the others.
        ProviderTimeout = 6,
        /// The request could not be handed to a provider at all.
        NotPerformed = 7,
        /// The activity was not liked or unliked.
        LikeFailed = 8
    };

    /// An error of \a type. The description may be empty.
    KinletError(Type type = UnknownError, const QString &description = QString());
    /// Copies are deep: an error shares nothing.
    KinletError(const KinletError &other);
    /// Copies are deep.
    KinletError &operator=(const KinletError &other);
    virtual ~KinletError();

    /// What went wrong, for programs.
    Type type() const;
    /// What happened, for people; empty when the reporter gave none.
    QString description() const;

private:
    friend QDataStream &operator>>(QDataStream &in, KinletError &error);

    std::unique_ptr<KinletErrorPrivate> d;
};

/// Writes the description, then the type as 32 bit signed.
KINLET_EXPORT QDataStream &operator<<(QDataStream &out, const KinletError &error);
/// Reads the same; what a truncated stream does not hold is empty and 0.
KINLET_EXPORT QDataStream &operator>>(QDataStream &in, KinletError &error);

Q_DECLARE_METATYPE(KinletError)
