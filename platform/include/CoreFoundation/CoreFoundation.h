// Apple's CoreFoundation interfaces that the toolkit and the plug-in bundle call.
#ifndef XPPLATFORM_COREFOUNDATION_COREFOUNDATION_H
#define XPPLATFORM_COREFOUNDATION_COREFOUNDATION_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFDateFormatter.h>
#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFLocale.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFTimeZone.h>
#include <CoreFoundation/CFURL.h>

#endif
