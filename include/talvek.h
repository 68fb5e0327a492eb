/*
 * TalvekAPI: simulates how decades of polluted air and rain change the surface of a stone object.
 *
 * A host names a triangle mesh, sets the material of the stone, the epochs and the weathering model, and calls
 * talvekStart. The library computes how far the surface recedes or grows in every epoch, moves the vertices along
 * their normals and writes the surface of each epoch as an OBJ file, a frame. Usual order of calls:
 *
 *     talvekSetFileName("stone.obj");
 *     talvekSetTimeSpan(10, 365);                   ten epochs of a year
 *     talvekSetMode(TALVEK_MODE_MESH_DATA);
 *     talvekSetModel(TALVEK_MODEL_ACID_RAIN);
 *     talvekInit();                                 parameter stores with their defaults
 *     talvekSetMaterialParams(...);                 if the defaults do not fit
 *     talvekSetEpochParams(0, ...);
 *     talvekStart();                                runs all epochs, writes the frames
 *     talvekGetFrameNumTriangles(10); talvekGetFrameGeometry(10, ...);
 *     talvekFree();
 *
 * talvekReadParams takes the place of the setters and talvekInit when the parameters stand in a parameter file.
 *
 * Rules that hold for every function
 *
 * Session. There is one session per process; it has no handle. Nothing is shared between processes but the files.
 *
 * Threads. The library creates none and locks nothing: call it from one thread at a time. Two functions may be called
 * from another thread while talvekStart runs: talvekGetStatus and talvekStop.
 *
 * Results. Functions that can fail return a signed 32-bit result code: TALVEK_OK or one of the negative values below.
 * Getters of plain values return the value itself. No exception leaves the library, and nothing ends the process: not
 * even a write to a closed pipe or beyond the limit for the size of files, whatever the process does on such signals.
 *
 * Floating point. The library calculates in the default environment of the processor, to nearest and with no exception
 * enabled, whatever the host has set, and gives the host its own back before it returns.
 *
 * Null pointers. A null pointer where the host has to pass something gives TALVEK_ERROR_NULL and changes nothing.
 *
 * Memory. Every array that is passed in or out belongs to the host and is not kept after the call. The library frees
 * its own memory with talvekFree and when it is unloaded.
 *
 * Numbering. Epochs count from 1. In the two epoch setters 0 stands for every epoch. Frame n is the surface after
 * epoch n; frame 0 is the input surface.
 *
 * Units. Mesh coordinates are millimetres, time is days.
 *
 * Names of files. NUL-terminated, at most 1023 bytes, relative to the working directory. On Linux they are bytes and
 * are handed to the system as they are. On Windows they are UTF-8 where the process's code page is UTF-8, otherwise
 * text in the process's code page.
 *
 * Text. Numbers in files and messages have the decimal point '.', whatever locale the host has set. The library's
 * messages go to standard output and, during a run, to the run log as well. Reports about a mesh file that does not
 * load go to standard error.
 *
 * Files that are replaced (frames, parameter files, exported surfaces) are written beside the old file and take its
 * name only when they are complete: under such a name there is always a whole file or none. As long as they are not,
 * they are called ".talvek-", ten letters or digits, ".tmp"; what a process that was ended has left of them is removed
 * by the next run in the folder. Nothing is written under a name that leads to the mesh, the mineral map or the
 * parameter file of the session: the run log stays closed and a frame is left out.
 */
#ifndef TALVEK_H
#define TALVEK_H

#include <stdint.h>

#define TALVEK_VERSION_MAJOR 2
#define TALVEK_VERSION_MINOR 2
#define TALVEK_VERSION_PATCH 0

#if defined(_WIN32)
#if defined(TALVEK_BUILDING)
#define TALVEK_API __declspec(dllexport)
#elif defined(TALVEK_STATIC)
#define TALVEK_API
#else
#define TALVEK_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define TALVEK_API __attribute__((visibility("default")))
#else
#define TALVEK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Result codes. */
enum {
    TALVEK_OK = 0,
    TALVEK_ERROR_NO_VERTICES = -1,     /* the frame holds no vertices */
    TALVEK_ERROR_RANGE = -2,           /* a value is out of range, or a file could not be opened or created */
    TALVEK_ERROR_NULL = -3,            /* a null pointer was passed, or the parameter stores do not exist */
    TALVEK_ERROR_FRAME = -4,           /* the frame's file could not be loaded */
    TALVEK_ERROR_MESH = -5,            /* the mesh could not be loaded, or the run could not work with it */
    TALVEK_ERROR_UNDEFINED_MODE = -6,  /* the operating mode is not defined */
    TALVEK_ERROR_UNDEFINED_MODEL = -7, /* the weathering model is not defined in this operating mode */
};

/* Operating modes. */
enum {
    TALVEK_MODE_OFFSETTING = 0,   /* prescribed offsets instead of weathering */
    TALVEK_MODE_MESH_DATA = 1,    /* the stone is homogeneous */
    TALVEK_MODE_QEMSCAN = 2,      /* mineral map, surface resampled on a 460 x 460 grid in texture space */
    TALVEK_MODE_GRAIN_WEAVER = 3, /* mineral map, each vertex moves by the mineral under it */
};

/* Weathering models of TALVEK_MODE_OFFSETTING. */
enum {
    TALVEK_MODEL_CONSTANT_OFFSET = 0, /* every vertex moves by the same distance */
    TALVEK_MODEL_RANDOM_OFFSET = 1,   /* every vertex moves by its own normally distributed distance */
    TALVEK_MODEL_SMOOTHING = 2,       /* every vertex moves in proportion to its mean curvature */
};

/* Weathering models of the other three operating modes. */
enum {
    TALVEK_MODEL_SO2_CRUST = 1,     /* dry deposition of crust due to SO2 */
    TALVEK_MODEL_SO2_NO2_CRUST = 2, /* dry deposition of crust due to SO2+NO2 */
    TALVEK_MODEL_ACID_RAIN = 3,     /* recession by acid rain due to SO2+NO2+CO2 */
};

/* Session status. The value 3 is not used. */
enum {
    TALVEK_STATUS_LOADED = 0,    /* never initialised */
    TALVEK_STATUS_READY = 1,     /* after talvekInit or talvekStop */
    TALVEK_STATUS_COMPUTING = 2, /* talvekStart is moving the surface */
    TALVEK_STATUS_FINISHED = 4,  /* a run has completed */
};

/* Sizes. */
enum {
    TALVEK_MATERIAL_PARAMS = 8,         /* De, Den, Hd, Ks, Ksn, Kr, Mb, Db */
    TALVEK_EPOCH_PARAMS = 4,            /* SO2, NO2, Rv, RpH */
    TALVEK_MAX_EPOCHS = 4000,           /* most epochs of a session */
    TALVEK_MAX_EPOCH_DAYS = 1000000,    /* most days of an epoch */
    TALVEK_FILE_NAME_SIZE = 1024,       /* room that talvekGetFileName needs, in bytes */
    TALVEK_FRAME_FILE_NAME_SIZE = 1040, /* room that talvekGetFrameFileName needs, in bytes */
};

/*
 * The session
 */

/* Creates the material record and the epoch table where they do not exist, with the defaults of the current operating
 * mode, epoch count and days per epoch, and sets the status to TALVEK_STATUS_READY. Existing values are kept.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL if there is no memory for them. */
TALVEK_API int32_t talvekInit(void);

/* Releases the material record and the epoch table. The status stays. */
TALVEK_API void talvekFree(void);

/* Runs the simulation on the calling thread: opens the run log (the mesh file's base name with ".inf"), loads the
 * mesh, and writes a frame for every epoch as well as the first and the last surface ("NAME.obj_i.obj",
 * "NAME.obj_w.obj" for a mesh file NAME). With a run log that cannot be created the run goes on without one.
 * Returns TALVEK_OK after a completed run; TALVEK_ERROR_UNDEFINED_MODE; TALVEK_ERROR_UNDEFINED_MODEL;
 * TALVEK_ERROR_NULL if the material record or the epoch table does not exist or has fewer epochs than the session;
 * TALVEK_ERROR_MESH if the mesh does not load or cannot be worked with. Frames that cannot be written are not
 * reported here: a host that has to know looks for them with talvekGetFrameNumTriangles. */
TALVEK_API int32_t talvekStart(void);

/* Records a request to stop and sets the status to TALVEK_STATUS_READY. A run that is under way completes all its
 * epochs nevertheless. */
TALVEK_API void talvekStop(void);

/* Returns the session's status, one of the TALVEK_STATUS values. */
TALVEK_API int32_t talvekGetStatus(void);

/* Names the mesh file and with it the parameter file, the mineral map and the run log: the same name with its last
 * extension replaced by ".cfg", ".bmp" and ".inf"; of a name without '.' the whole is the base name.
 * The formats are told by the extension, in lower or upper case: obj, wrl, sas, bin, fim.
 * In: name. Returns TALVEK_OK; TALVEK_ERROR_NULL; TALVEK_ERROR_RANGE if the name or the name of one of its frames
 * would be too long, in which case the previous name stays. */
TALVEK_API int32_t talvekSetFileName(const char* name);

/* Copies the mesh file's name. Out: TALVEK_FILE_NAME_SIZE bytes. Returns TALVEK_OK; TALVEK_ERROR_NULL. */
TALVEK_API int32_t talvekGetFileName(char* out);

/* Sets the operating mode, one of the TALVEK_MODE values.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE for any other value, in which case the mode becomes TALVEK_MODE_MESH_DATA. */
TALVEK_API int32_t talvekSetMode(int32_t mode);

/* Returns the operating mode. */
TALVEK_API int32_t talvekGetMode(void);

/* Returns the largest operating mode, 3. */
TALVEK_API int32_t talvekGetMaxMode(void);

/* Sets the weathering model, 0 to 3. Whether it is defined in the operating mode is checked by talvekStart.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE for any other value, in which case the model becomes 3. */
TALVEK_API int32_t talvekSetModel(int32_t model);

/* Returns the weathering model. */
TALVEK_API int32_t talvekGetModel(void);

/* Returns the largest weathering model, 3. The same function as talvekGetMaxMode. */
TALVEK_API int32_t talvekGetMaxModel(void);

/*
 * Parameters
 *
 * The epoch table is sized when it is created, by talvekInit or talvekReadParams. A host that raises the number of
 * epochs afterwards calls talvekFree and talvekInit; until then the new epochs are out of range.
 */

/* Sets the number of epochs, 1 to TALVEK_MAX_EPOCHS.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE for any other value, in which case the number stays. */
TALVEK_API int32_t talvekSetNumEpochs(int32_t n);

/* Returns the number of epochs. */
TALVEK_API int32_t talvekGetNumEpochs(void);

/* Returns the largest number of epochs, TALVEK_MAX_EPOCHS. */
TALVEK_API int32_t talvekGetMaxEpochs(void);

/* Returns the largest number of days in an epoch, TALVEK_MAX_EPOCH_DAYS. */
TALVEK_API int32_t talvekGetMaxEpochDays(void);

/* Sets the number of epochs and the days that each has when the epoch table is created.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE if one is out of range: the number then becomes 1, the days 365. */
TALVEK_API int32_t talvekSetTimeSpan(int32_t numEpochs, int32_t days);

/* Sets the days of an epoch, or of every epoch for epoch 0.
 * In: epoch, 0 to the number of epochs; days, 1 to TALVEK_MAX_EPOCH_DAYS.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE; TALVEK_ERROR_NULL if the epoch table does not exist. */
TALVEK_API int32_t talvekSetEpochTimeSpan(uint32_t epoch, uint32_t days);

/* Returns the whole days of an epoch; 0 if there is no such epoch. */
TALVEK_API int32_t talvekGetEpochTimeSpan(uint32_t epoch);

/* Sets the material of the stone.
 * In: TALVEK_MATERIAL_PARAMS values: De and Den, the diffusion coefficients of the SO2 and the SO2+NO2 crust; Hd and
 * Ks, the resistances of the SO2 crust; Ksn, the resistance of the SO2+NO2 crust; Kr, the rate constant of dry
 * recession; Mb, which multiplies the deposited mass; Db, the density that divides it.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL also if the material record does not exist. */
TALVEK_API int32_t talvekSetMaterialParams(const float* in);

/* Copies the material of the stone. Out: TALVEK_MATERIAL_PARAMS values in the same order.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL also if the material record does not exist. */
TALVEK_API int32_t talvekGetMaterialParams(float* out);

/* Sets the environment of an epoch, or of every epoch for epoch 0.
 * In: epoch, 0 to the number of epochs; TALVEK_EPOCH_PARAMS values: SO2, NO2, the rain volume Rv and its acidity RpH.
 * In TALVEK_MODE_OFFSETTING the four values are, per day: the constant offset, the mean and the spread of the random
 * offset, in millimetres along the outward normal, and the smoothing amount, in square millimetres, which the mean
 * curvature is multiplied by. The spread is three standard deviations: nearly all offsets lie within mean +- spread.
 * Negative smoothing amounts smooth the surface, positive ones roughen it.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE; TALVEK_ERROR_NULL also if the epoch table does not exist. */
TALVEK_API int32_t talvekSetEpochParams(uint32_t epoch, const float* in);

/* Copies the environment of an epoch, 1 to the number of epochs. Out: TALVEK_EPOCH_PARAMS values in the same order.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE; TALVEK_ERROR_NULL also if the epoch table does not exist. */
TALVEK_API int32_t talvekGetEpochParams(uint32_t epoch, float* out);

/* Reads mode, model, number of epochs, material and epochs from the parameter file. Both stores are created anew, with
 * defaults where the file says nothing.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE if the file cannot be opened or read, in which case the stores hold the
 * defaults; TALVEK_ERROR_NULL if there is no memory for the stores. */
TALVEK_API int32_t talvekReadParams(void);

/* Writes mode, model, number of epochs, material and epochs to the parameter file.
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE if the file cannot be written, in which case the previous file is intact, or if
 * it is the mesh or the mineral map under another name;
 * TALVEK_ERROR_NULL if the material record or the epoch table does not exist. */
TALVEK_API int32_t talvekSaveParams(void);

/* Sets whether a run also writes the input surface as frame 0 (1) or not (0).
 * Returns TALVEK_OK; TALVEK_ERROR_RANGE for any other value, which counts as 0. */
TALVEK_API int32_t talvekSetResults(int32_t flag);

/*
 * Frames
 *
 * Frames live as files only; each query loads the file anew. A frame left over from an earlier run is read like any
 * other.
 */

/* Returns the number of frames, not counting frame 0. The same function as talvekGetNumEpochs. */
TALVEK_API int32_t talvekGetNumFrames(void);

/* Writes the file name of a frame, whether the file exists or not.
 * In: frame, 0 to the number of epochs. Out: TALVEK_FRAME_FILE_NAME_SIZE bytes.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL; TALVEK_ERROR_RANGE. */
TALVEK_API int32_t talvekGetFrameFileName(uint32_t frame, char* out);

/* Gives the simulated time of a frame, the sum of the whole days of epochs 1 to frame.
 * In: frame, 0 to the number of epochs. Out: days, 0 on failure.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL also if the epoch table does not exist; TALVEK_ERROR_RANGE. */
TALVEK_API int32_t talvekGetFrameTime(uint32_t frame, uint32_t* days);

/* Returns the number of triangles of a frame; 0 if there is no such frame or its file does not load. */
TALVEK_API int32_t talvekGetFrameNumTriangles(uint32_t frame);

/* Reads the triangles of a frame.
 * In: frame, 0 to the number of epochs. Out: two arrays of 9 floats per triangle: the positions of its three corners
 * (x, y, z each), and the unit normals of the surface at these corners. Both have to hold 9 times
 * talvekGetFrameNumTriangles(frame) floats.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL; TALVEK_ERROR_RANGE; TALVEK_ERROR_FRAME if the file does not load;
 * TALVEK_ERROR_NO_VERTICES if it holds no vertices. */
TALVEK_API int32_t talvekGetFrameGeometry(uint32_t frame, float* vertices, float* normals);

/* Writes triangles as an OBJ file of three vertices each. A file that cannot be written is not reported.
 * In: path; numTriangles, 0 or more; vertices, 9 floats per triangle as talvekGetFrameGeometry gives them; normals,
 * not used, may be null.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL for a null path or null vertices; TALVEK_ERROR_RANGE for a count that is
 * negative or too large. */
TALVEK_API int32_t talvekSaveFrameGeometryObj(const char* path, int32_t numTriangles, const float* vertices,
                                              const float* normals);

/*
 * Text files of the host
 */

/* Empties a text file, or creates it. Returns TALVEK_OK; TALVEK_ERROR_NULL; TALVEK_ERROR_RANGE if it cannot be opened.
 */
TALVEK_API int32_t talvekResetLogFile(const char* path);

/* Prints a text on standard output and appends it to a file. In the text "%%" stands for "%"; every other character
 * stands for itself.
 * Returns TALVEK_OK; TALVEK_ERROR_NULL; TALVEK_ERROR_RANGE if the file cannot be opened or written. */
TALVEK_API int32_t talvekAppendLogFile(const char* path, const char* text);

#ifdef __cplusplus
}
#endif

#endif
