// Clang's thread-safety annotations. Other compilers see nothing.
#pragma once

#if defined(__clang__)
#define LUMBRINE_ANNOTATE(x) __attribute__((x))
#else
#define LUMBRINE_ANNOTATE(x)
#endif

#define LUMBRINE_CAPABILITY(name) LUMBRINE_ANNOTATE(capability(name))
#define LUMBRINE_SCOPED_CAPABILITY LUMBRINE_ANNOTATE(scoped_lockable)
#define LUMBRINE_GUARDED_BY(mutex) LUMBRINE_ANNOTATE(guarded_by(mutex))
#define LUMBRINE_REQUIRES(...) LUMBRINE_ANNOTATE(requires_capability(__VA_ARGS__))
#define LUMBRINE_EXCLUDES(...) LUMBRINE_ANNOTATE(locks_excluded(__VA_ARGS__))
#define LUMBRINE_ACQUIRE(...) LUMBRINE_ANNOTATE(acquire_capability(__VA_ARGS__))
#define LUMBRINE_RELEASE(...) LUMBRINE_ANNOTATE(release_capability(__VA_ARGS__))
#define LUMBRINE_NO_THREAD_SAFETY_ANALYSIS LUMBRINE_ANNOTATE(no_thread_safety_analysis)
