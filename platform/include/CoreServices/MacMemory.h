// Apple's Memory Manager pointer blocks (MacMemory.h).
#ifndef XPPLATFORM_CORESERVICES_MACMEMORY_H
#define XPPLATFORM_CORESERVICES_MACMEMORY_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A block of `byteCount` bytes, or NULL (then MemError() gives memFullErr, or paramErr
/// for a negative count). Released with DisposePtr.
Ptr NewPtr(Size byteCount);
/// As NewPtr, with the block's bytes set to zero.
Ptr NewPtrClear(Size byteCount);
/// Releases a block from NewPtr or NewPtrClear; NULL is allowed and does nothing.
void DisposePtr(Ptr p);
/// The result of the calling thread's last Memory Manager call.
OSErr MemError(void);

#ifdef __cplusplus
}
#endif

#endif
