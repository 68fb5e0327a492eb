/* The smallest host in C: weathers a mesh for ten years of acid rain.
 *
 *     cc host.c $(pkg-config --cflags --libs talvek) -o host && ./host stone.obj
 */
#include <stdio.h>
#include <talvek.h>

int main(int argc, char** argv) {
    int32_t result;
    if (argc != 2 || talvekSetFileName(argv[1]) != TALVEK_OK) {
        fprintf(stderr, "usage: host MESH\n");
        return 2;
    }
    talvekSetTimeSpan(10, 365);
    talvekSetMode(TALVEK_MODE_MESH_DATA);
    talvekSetModel(TALVEK_MODEL_ACID_RAIN);
    talvekInit();
    result = talvekStart();
    printf("result %d, %d triangles in frame 10\n", (int)result, (int)talvekGetFrameNumTriangles(10));
    talvekFree();
    return result == TALVEK_OK ? 0 : 1;
}
