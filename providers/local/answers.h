// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <Kinlet/SocialGenericData>

#include <QList>

class SocialDataRequest;
class Store;

/// What the journal answers to requests for its contents. All functions throw KinletError if the
/// request makes no sense, the later ones also StoreError.
namespace Answers {

/// Whether the request asks for a change of the journal.
bool isWriting(const SocialDataRequest &request);
/// Looks at what needs no store.
void check(const SocialDataRequest &request);
/// The records asked for.
QList<SocialGenericData> read(Store &store, const SocialDataRequest &request);
/// Does what is asked for, inside a Transaction; the activity that came of it.
QList<SocialGenericData> write(Store &store, const SocialDataRequest &request);

}
