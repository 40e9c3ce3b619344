// What the component is known by: class IDs, contract IDs, registry values.
#ifndef ORVA_HOST_COMPONENT_IDS_H_
#define ORVA_HOST_COMPONENT_IDS_H_

#include "platform/basics.h"

namespace orva {

// {f4cc0540-284c-11d4-84ae-003a06000000}
inline constexpr nsCID kStreamingDetectorCID = {
    0xf4cc0540, 0x284c, 0x11d4, {0x84, 0xae, 0x00, 0x3a, 0x06, 0x00, 0x00, 0x00}};
inline constexpr char kStreamingDetectorName[] = "Orva Charset Detector";
inline constexpr char kStreamingDetectorContractID[] =
    "@mozilla.org/intl/charsetdetect;1?type=orva_charset_detector";

// {17beda80-29bf-11d4-84af-fef0f0000000}
inline constexpr nsCID kStringDetectorCID = {
    0x17beda80, 0x29bf, 0x11d4, {0x84, 0xaf, 0xfe, 0xf0, 0xf0, 0x00, 0x00, 0x00}};
inline constexpr char kStringDetectorName[] = "Orva String Charset Detector";
inline constexpr char kStringDetectorContractID[] =
    "@mozilla.org/intl/stringcharsetdetect;1?type=orva_charset_detector";

// The detector's entry in the host's registry.
inline constexpr char kRegistrySubtree[] =
    "software/netscape/intl/charsetdetector/orva_charset_detector";
inline constexpr char kRegistryType[] = "type";
inline constexpr char kRegistryTypeValue[] = "orva_charset_detector";
inline constexpr char kRegistryText[] = "defaultEnglishText";
inline constexpr char kRegistryTextValue[] = "OrvaDetector";

}  // namespace orva

#endif  // ORVA_HOST_COMPONENT_IDS_H_
