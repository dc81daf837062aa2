// SPDX-FileCopyrightText: 2026 The Kinlet developers
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "benchmarkprovider.h"

/// The provider as a plug-in; its name comes with the environment.
class BenchmarkPlugin : public BenchmarkProvider {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.lumend.Kinlet/1.0")
    Q_INTERFACES(KinletInterface)

public:
    BenchmarkPlugin() : BenchmarkProvider(qEnvironmentVariable("KINLET_BENCHMARK_PROVIDER")) { }
};

#include "benchmarkplugin.moc"
