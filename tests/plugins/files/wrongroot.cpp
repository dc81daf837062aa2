// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include <QObject>
#include <QtPlugin>

class WrongRoot : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
};

#include "wrongroot.moc"
