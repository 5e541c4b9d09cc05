// SPDX-License-Identifier: MIT
// Part of every test that links the test support. The distribution's Qt, GLib and D-Bus libraries are built without
// ThreadSanitizer, which does not see the locks inside them and so takes what they do for races. Only accesses of our
// own code count therefore; nothing of it is suppressed. The few lines of Qt's headers that are compiled into it and
// take the arguments out of a queued call are Qt's, too. TSAN_OPTIONS may add to this.
#if defined(__SANITIZE_THREAD__)
extern "C" __attribute__((visibility("default"))) const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}

extern "C" __attribute__((visibility("default"))) const char *__tsan_default_suppressions()
{
    return "race_top:QtCore/qobjectdefs_impl.h\n";
}
#endif
