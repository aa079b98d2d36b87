#pragma once

// Says which lock guards what, for compilers that check it (-Wthread-safety); nothing for the others.

#if defined(__clang__)
#define KALVIO_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define KALVIO_THREAD_ANNOTATION(attribute)
#endif

// A class that is a lock, and one that holds a lock for its lifetime.
#define KALVIO_CAPABILITY(name) KALVIO_THREAD_ANNOTATION(capability(name))
#define KALVIO_SCOPED_CAPABILITY KALVIO_THREAD_ANNOTATION(scoped_lockable)
// A member that is touched only while the lock is held, and one whose pointed-at object is.
#define KALVIO_GUARDED_BY(lock) KALVIO_THREAD_ANNOTATION(guarded_by(lock))
#define KALVIO_PT_GUARDED_BY(lock) KALVIO_THREAD_ANNOTATION(pt_guarded_by(lock))
// What a function asks of its caller, and what it does to locks.
#define KALVIO_REQUIRES(...) KALVIO_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define KALVIO_EXCLUDES(...) KALVIO_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define KALVIO_ACQUIRE(...) KALVIO_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define KALVIO_RELEASE(...) KALVIO_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define KALVIO_TRY_ACQUIRE(...) KALVIO_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define KALVIO_NO_THREAD_SAFETY_ANALYSIS KALVIO_THREAD_ANNOTATION(no_thread_safety_analysis)
