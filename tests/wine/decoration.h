// The names under which the library for Windows exports its functions: the decoration that
// Microsoft's compilers make from the types of the arguments.
//
// `P` is the decoration of "pointer to": "PA" where pointers have 32 bits, "PEA" where they
// have 64. The rest is one letter or name per argument (E unsigned char, H int, I unsigned int, X
// void, U...@@ a struct); a digit repeats an earlier argument that took more than one letter.
#pragma once

#define LUMALANE_DECORATION_SURFACE(P) P "Utag_ajust_contrast_info@@"

// By the names of signatures in frame/exports.inc.
#define LUMALANE_DECORATION_parameters(P) P "X"
#define LUMALANE_DECORATION_picture(P) P "E000HHHH" LUMALANE_DECORATION_SURFACE(P)
#define LUMALANE_DECORATION_mix(P) P "UtagMIX_INFO@@"
#define LUMALANE_DECORATION_key_fill(P) "I" P "XHHHH"
#define LUMALANE_DECORATION_mask(P) P "E0IIHHH"
#define LUMALANE_DECORATION_packed_stretch(P) P "X000HHH"
#define LUMALANE_DECORATION_packed_stretch_ajust(P) P "X000HHH" LUMALANE_DECORATION_SURFACE(P)
#define LUMALANE_DECORATION_plane_stretch(P) P "E0HHHH"
#define LUMALANE_DECORATION_plane_stretch_ajust(P) P "E0HHHH" LUMALANE_DECORATION_SURFACE(P) "H"
#define LUMALANE_DECORATION_frame_stretch(P) P "UtagVideoFrame@@HH" P "EH" LUMALANE_DECORATION_SURFACE(P)

#define LUMALANE_DECORATED_NAME(P, signature, name)                                                \
    "?" #name "@@YAX" LUMALANE_DECORATION_##signature(P) "@Z"
