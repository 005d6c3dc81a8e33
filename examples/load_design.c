/* Loads a design by board type from an installation, shows what is in it and calls the factory of every module.

   usage: load_design NAME BOARD
   NAME without a '/' is looked for below $KOVADIR5_64: "Hardware Applets/<board>/NAME". */

#define _POSIX_C_SOURCE 200809L

#include "zulrt.h"

#include <dlfcn.h>
#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* What an operator library exports for each module type. */
typedef void* (*Factory)(char const* instance);

static char const* orNone(char const* text)
{
    return text != NULL ? text : "-";
}

static void printParameters(zul_module_ext const* module)
{
    for (unsigned int i = 0; i < ZulModuleGetParamCount(module); ++i) {
        zul_param const* const param = ZulModuleGetParam(module, i);
        printf("    %s = ", param->name);
        if (param->param_string != NULL) {
            printf("'%s'\n", param->param_string);
        } else if (param->field != NULL) {
            printf("%" PRIu32 " elements\n", param->field_size);
        } else if (param->double_value == param->double_value) { /* not NaN: the type is double */
            printf("%g\n", param->double_value);
        } else {
            printf("%" PRIu64 "\n", param->value);
        }
    }
}

static void* openLibrary(char const* directory, char const* file)
{
    size_t const length = strlen(directory) + strlen(file) + 2;
    char* const path = malloc(length);
    if (path == NULL) {
        return NULL;
    }
    snprintf(path, length, "%s/%s", directory, file);
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    free(path);
    return library;
}

/* @return the host's side of the module, made by the module's library; null when that cannot be */
static void* createOperator(fpga_design const* design, unsigned int module)
{
    char const* const directory = ZulGetModuleDllDir(design);
    char const* const file = ZulGetModuleDllName(design, module);
    char const* const symbol = ZulGetModuleDecoratedName(design, module);
    void* const library = directory != NULL && file != NULL ? openLibrary(directory, file) : NULL;
    void* const address = library != NULL ? dlsym(library, symbol) : NULL;
    if (address == NULL) {
        fprintf(stderr, "load_design: %s: %s\n", orNone(file),
                orNone(library != NULL || file != NULL ? dlerror() : NULL));
        return NULL;
    }
    Factory create = NULL;
    memcpy(&create, &address, sizeof create); /* C has no conversion from void* to a function */
    void* const operatorObject = create(ZulGetModuleName(design, module));
    if (operatorObject == NULL) {
        fprintf(stderr, "load_design: %s made no operator\n", symbol);
        return NULL;
    }
    printf("    operator made by %s of %s\n", symbol, file);
    return operatorObject;
}

static int printModules(fpga_design const* design)
{
    static void** operators; /* they and their libraries stay until the end of the program */
    int allMade = 1;
    int const count = ZulGetNrOfModules(design);
    operators = calloc((size_t)count + 1, sizeof *operators);
    if (operators == NULL) {
        perror("load_design");
        return 0;
    }
    printf("%d modules\n", count);
    for (unsigned int i = 0; i < (unsigned int)count; ++i) {
        printf("  %s of type %s in process %d\n", orNone(ZulGetModuleFullName(design, i)),
               orNone(ZulGetModuleTyp(design, i)), ZulGetModuleProcessId(design, i));
        printParameters(ZulGetModuleByNumber(design, i));
        operators[i] = createOperator(design, i);
        allMade = operators[i] != NULL && allMade;
    }
    return allMade;
}

static void printRegisters(fpga_design const* design)
{
    int const count = ZulGetNrOfRegister(design);
    printf("%d registers\n", count);
    for (unsigned int i = 1; i <= (unsigned int)count; ++i) {
        int const first = ZulGetRegisterBitPos(design, i);
        printf("  0x%08x %s, bits %d to %d, %s, 0x%" PRIx64 "\n",
               (unsigned int)ZulGetRegisterAddress(design, i), orNone(ZulGetRegisterName(design, i)), first,
               first + ZulGetRegisterBitRange(design, i) - 1,
               ZulGetRegisterDirection(design, i) != 0 ? "read and write" : "read",
               ZulGetRegisterInitValue(design, i));
    }
}

static void printEvents(fpga_design const* design)
{
    zul_event_record const* event;
    for (unsigned int i = 0; (event = ZulGetEvent(design, i)) != NULL; ++i) {
        printf("event %s on queue %d, bit %d, with %d bytes, register %s\n", orNone(event->name),
               event->queue, event->bit, event->data_length,
               orNone(ZulGetRegisterName(design, event->register_index)));
    }
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        fputs("usage: load_design NAME BOARD\n", stderr);
        return 2;
    }
    int const keepLibrariesThatAreThere = 516; /* not 0: unpack them */
    char* path = NULL;
    fpga_design* const design =
        ZulLoadZulFileWithTypeEx(argv[1], &path, (int)strtol(argv[2], NULL, 0), keepLibrariesThatAreThere);
    if (design == NULL) {
        fprintf(stderr, "load_design: %s: %s\n", argv[1], strerror(errno));
        return 1;
    }
    printf("%s from %s, version %s\n", orNone(ZulGetUserInfoByName(design, "DESIGN_NAME")), path,
           orNone(ZulGetDesignVersion(design)));
    free(path);
    int const allMade = printModules(design);
    printRegisters(design);
    printEvents(design);
    return ZulUnloadZulFile(design) == 0 && allMade ? 0 : 1;
}
