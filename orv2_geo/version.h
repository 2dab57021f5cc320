/* version.h: the library's version, the one place where it stands. */
#ifndef ORV2_GEO_VERSION_H
#define ORV2_GEO_VERSION_H

#define ORV2_VERSION_MAJOR 2
#define ORV2_VERSION_MINOR 0
#define ORV2_VERSION_PATCH 0

/* In one number that grows: 20103 is 2.1.3. */
#define ORV2_VERSION (ORV2_VERSION_MAJOR * 10000 + ORV2_VERSION_MINOR * 100 + ORV2_VERSION_PATCH)

#endif /* ORV2_GEO_VERSION_H */
