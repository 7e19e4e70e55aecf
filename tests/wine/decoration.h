// The names under which the 32-bit library for Windows exports its functions: the decoration that
// Microsoft's compilers make from the types of the arguments.
//
// "PA" is "pointer to". The rest is one letter or name per argument (E unsigned char, H int, I
// unsigned int, X void, U...@@ a struct); a digit repeats an earlier argument that took more than
// one letter.
#pragma once

#define LUMALANE_DECORATION_SURFACE "PAUtag_ajust_contrast_info@@"

// By the names of signatures in abi/exports.inc.
#define LUMALANE_DECORATION_parameters "PAX"
#define LUMALANE_DECORATION_picture "PAE000HHHH" LUMALANE_DECORATION_SURFACE
#define LUMALANE_DECORATION_mix "PAUtagMIX_INFO@@"
#define LUMALANE_DECORATION_key_fill "IPAXHHHH"
#define LUMALANE_DECORATION_mask "PAE0IIHHH"
#define LUMALANE_DECORATION_packed_stretch "PAX000HHH"
#define LUMALANE_DECORATION_packed_stretch_ajust "PAX000HHH" LUMALANE_DECORATION_SURFACE
#define LUMALANE_DECORATION_plane_stretch "PAE0HHHH"
#define LUMALANE_DECORATION_plane_stretch_ajust "PAE0HHHH" LUMALANE_DECORATION_SURFACE "H"
#define LUMALANE_DECORATION_frame_stretch "PAUtagVideoFrame@@HHPAEH" LUMALANE_DECORATION_SURFACE

#define LUMALANE_DECORATED_NAME(signature, name)                                                   \
    "?" #name "@@YAX" LUMALANE_DECORATION_##signature "@Z"
