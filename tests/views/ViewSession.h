#pragma once

#include <QString>
#include <memory>

#include "AppStore.h"
#include "DesktopServices.h"
#include "StoreHome.h"
#include "ViewStyle.h"

class QQmlEngine;

namespace tallowmere::testing {

// What the views of one test program read: the store of an empty temporary home, already past
// its first scan, with the style and desktop services beside it. Make it once the application
// exists; the views see it in every engine it is registered with.
class ViewSession {
public:
    ViewSession();
    ViewSession(const ViewSession&) = delete;
    ViewSession& operator=(const ViewSession&) = delete;
    ~ViewSession();

    // Lets `engine` import the views and see the store, the style and the desktop services,
    // and gives its documents the home folder as `testHome`. A registered instance serves only
    // one engine, so every new engine registers them again.
    void registerFor(QQmlEngine& engine);

    AppStore& store() { return *m_store; }
    QString home() const;

private:
    StoreHome m_home;  // first: the store reads the environment it sets
    ChooserScript m_script;
    ViewStyle m_style;
    DesktopServices m_desktop;
    std::unique_ptr<AppStore> m_store;
};

}  // namespace tallowmere::testing
