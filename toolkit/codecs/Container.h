// The binary container text: a host container value with its typed streams as
// one printable text framed by "<VARN_BINARY_CONTAINER10>", in a hex and a
// base64 variant.
#ifndef XPTOOLKIT_CODECS_CONTAINER_H
#define XPTOOLKIT_CODECS_CONTAINER_H

#include "text/HostValues.h"

/// Appends the hex variant of the container parameter at *index (not advanced)
/// to `out`. Returns 0 or the host's read error.
int XP7_GetBinaryAsHxtTxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out, unsigned int* index);
/// Appends the base64 variant of the container parameter at *index to `out`.
/// Returns 0 or the host's read error.
int XP7_GetFMBinaryDataAsBase64TxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out,
                                          unsigned int* index);
/// Adds the streams of a hex container text to `container`; deletes the open tag
/// from `text`. Returns 0, -50 for a malformed text, or the host's add error.
int XP7_HxtTxtToBinary(fmx::TextAutoPtr& text, fmx::BinaryDataAutoPtr& container);
/// As XP7_HxtTxtToBinary for the base64 variant.
int XP7_Base64TxtToFMBinaryData(fmx::TextAutoPtr& text, fmx::BinaryDataAutoPtr& container);
/// Decodes one base64 stream of `encodedLength` characters at *position and adds
/// it with `type`. Returns 0, -50, or the host's add error.
int XP7_AddOneFMBinaryData(fmx::TextAutoPtr& text, unsigned int textSize, unsigned int* position,
                           unsigned int encodedLength, unsigned int size, unsigned int type,
                           fmx::BinaryDataAutoPtr& container);
/// Hands out the bytes of stream `streamIndex` in a new array (delete[]; null for
/// an empty stream). Returns 0 or the host's read error.
int XP7_GetBinaryData(fmx::BinaryData& data, int streamIndex, char** bytes, unsigned int* size);

#endif  // XPTOOLKIT_CODECS_CONTAINER_H
