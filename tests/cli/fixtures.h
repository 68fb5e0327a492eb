// The files that every command-line case finds in its folder.
#pragma once

#include "support/test_files.h"

namespace talvek::test {

/// Small meshes, sound and faulty, mineral maps and parameter files:
///   plane.obj         9 vertices, 8 faces, no texture coordinates
///   fine.obj          the same with 441 vertices, 20 mm wide; huge.obj: a triangle 200 m wide
///   textured.obj      the same with texture coordinates, counter-clockwise, and a map textured.bmp of two minerals
///   clockwise.obj     the same the other way round in texture space, with a map of one mineral
///   mapless.obj       the same as textured.obj without a map beside it
///   white.bmp         a map of one mineral; unknown.bmp: one of a colour that stands for none
///   half.bmp          the map of textured.obj; half.png: the same as a PNG; palette.bmp: white, 8 bits per pixel
///   eight.obj         the same with a map of 8 bits; fakemap.obj: with a map that is none; partly.obj: with a map half
///                     of which stands for no mineral
///   faulty.obj        loads, with one fault of each kind; Mixed.Obj: a good mesh under a name that is not read
///   far.obj           a triangle a thousand kilometres from the origin
///   vertices.obj      vertices without faces
///   broken.obj        a face that names a vertex which is not there
///   digits.obj        coordinates with many digits
///   seam.obj          a plane whose two faces share vertices but no texels
///   text.ply          a square as text; cut.ply, big.ply, fake.ply, index.ply: faulty in one way each
///   relative.obj, quads.obj, comment.obj, short.obj: each with something that the reader takes otherwise than meant
///   old.sas           a triangle in the oldest version, old-copy.sas the same; version.sas, head.sas, cut.sas,
///                     negative.bin, channels.fim: faulty in one way each
///   square.wrl        a square; scene.wrl: the same and a triangle; box.wrl: the same twice, and other shapes;
///                     flood.wrl: with 200 colours that do not fit it
///   sound.bin         a square, cut.bin: 70 % of it; flipped.sas: with a count that is too small
///   pentagon.obj      a triangle and a quadrangle; folded.obj: two triangles one over the other;
///                     solid.obj: a tetrahedron of 1,500 cubic mm
///   two.cfg           mode 1, model 1, two epochs of 100 and 200 days
void writeFixtures(const TempFolder& folder);

}  // namespace talvek::test
