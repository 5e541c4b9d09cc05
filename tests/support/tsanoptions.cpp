// SPDX-License-Identifier: MIT
// Part of every test that links the test support. The distribution's Qt, GLib and D-Bus libraries are built without
// ThreadSanitizer. It does not see the locks inside them and reports races there. Therefore only accesses of our own
// code count; they are never suppressed. The few lines of Qt's headers that are compiled into our code and read the
// arguments of a queued call count as Qt's: by their file, and by their function, because ThreadSanitizer does not
// always find the file. TSAN_OPTIONS may add options.
#if defined(__SANITIZE_THREAD__)
extern "C" __attribute__((visibility("default"))) const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}

extern "C" __attribute__((visibility("default"))) const char *__tsan_default_suppressions()
{
    return "race_top:QtCore/qobjectdefs_impl.h\n"
           "race_top:^QtPrivate::FunctorCall<\n";
}
#endif
