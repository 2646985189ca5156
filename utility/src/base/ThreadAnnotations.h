#pragma once

// Which lock guards what, for Clang's static analysis (-Wthread-safety), which rejects an access
// without the lock. Other compilers see nothing. The names are those of Clang's attributes.

#if defined(__clang__)
#define BRN_THREAD_ATTRIBUTE(inAttribute) __attribute__((inAttribute))
#else
#define BRN_THREAD_ATTRIBUTE(inAttribute)
#endif

// Of a class: it is a lock, or it holds one from its constructor to its destructor.
#define BRN_CAPABILITY(inKind) BRN_THREAD_ATTRIBUTE(capability(inKind))
#define BRN_SCOPED_CAPABILITY BRN_THREAD_ATTRIBUTE(scoped_lockable)

// Of a variable: it, or what it points to, is accessed only with the lock held.
#define BRN_GUARDED_BY(inLock) BRN_THREAD_ATTRIBUTE(guarded_by(inLock))
#define BRN_PT_GUARDED_BY(inLock) BRN_THREAD_ATTRIBUTE(pt_guarded_by(inLock))

// Of a function: its caller holds the lock, or does not hold it.
#define BRN_REQUIRES(inLock) BRN_THREAD_ATTRIBUTE(requires_capability(inLock))
#define BRN_EXCLUDES(inLock) BRN_THREAD_ATTRIBUTE(locks_excluded(inLock))

// Of a function: it locks or unlocks; without an argument, its own object.
#define BRN_ACQUIRE(...) BRN_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define BRN_ACQUIRE_SHARED(...) BRN_THREAD_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
#define BRN_RELEASE(...) BRN_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define BRN_RELEASE_SHARED(...) BRN_THREAD_ATTRIBUTE(release_shared_capability(__VA_ARGS__))

// Of a function: it is not analysed. A comment beside it says why.
#define BRN_NO_THREAD_SAFETY_ANALYSIS BRN_THREAD_ATTRIBUTE(no_thread_safety_analysis)
