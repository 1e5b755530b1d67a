#pragma once

#include "app/windowtest.h"
#include "services/pluginhost.h"
#include "services/workfolder.h"
#include "support/machinesettings.h"
#include "support/substitutelibraries.h"

/// The main window with a management program beside it, whose folder holds what a test puts there.
class PluginTest : public WindowTest {
    Q_OBJECT
protected:
    /// Puts the folder there without a window.
    void prepare() {
        PluginHost::resetForTesting();
        m_settings = std::make_unique<MachineSettings>();
        m_libraries = std::make_unique<SubstituteLibraries>();
        m_settings->set("BrindleManager"_qs, "RootDir"_qs, m_libraries->folder());
        m_settings->set("BrindleManager"_qs, "Version"_qs, "1.0"_qs);
    }
    void prepareHost(const char *plugins) {
        prepare();
        m_libraries->add("kilnworks"_qs);
        qputenv("TINDRA_TEST_PLUGINS", plugins);
    }
    void cleanup() {
        WindowTest::cleanup();
        PluginHost::resetForTesting();
        m_libraries.reset();
        m_settings.reset();
        qunsetenv("TINDRA_TEST_PLUGINS");
        qunsetenv("TINDRA_TEST_RESULT");
    }
    /// The calls of that function so far.
    QStringList calls(const QString &function) const {
        return m_libraries->calls().filter(QRegularExpression(QLatin1Char('^') + function));
    }

    std::unique_ptr<MachineSettings> m_settings;
    std::unique_ptr<SubstituteLibraries> m_libraries;
};
