#pragma once

/// Everything a host program needs: read media files, build a project, write and validate the document, and hand it to
/// the editing application.

#include "fcp/UnixSocketChannel.h"
#include "fcp/ZANFCPCommunicator.h"
#include "fcp/ZANFCPEvent.h"
#include "fcp/ZANFCPProjectHost.h"
#include "media/MovieReading.h"
#include "media/PELFileElement.h"
#include "media/PELMovieProperties.h"
#include "media/ZANFCPAdditions.h"
#include "platform/FileURL.h"
#include "platform/Log.h"
#include "platform/PELValue.h"
#include "project/Clips.h"
#include "project/Multiclip.h"
#include "project/Options.h"
#include "project/ProjectRoot.h"
#include "project/Sequence.h"
#include "timecode/PELTimecodeObject.h"
#include "timecode/ZANFCPTimecode.h"
#include "xml/CommonElements.h"
#include "xml/Labels.h"
#include "xml/MajorElements.h"
#include "xml/PELArchive.h"
#include "xml/PELElement.h"
#include "xml/PELRootElement.h"
