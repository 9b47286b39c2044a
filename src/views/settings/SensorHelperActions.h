#pragma once

#include <functional>

/// What the General tab may do with the installed sensor helper (the set-user-ID copy
/// that runs the fan daemon). Both empty: the tab shows no helper row.
struct SensorHelperActions {
    std::function<bool()> isInstalled;
    /// Removes the copy with administrator rights, off the main thread; `done` runs on
    /// the main thread with whether it is gone.
    std::function<void(std::function<void(bool)> done)> uninstall;
};
