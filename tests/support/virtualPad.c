/* A pad that no hardware stands behind: loaded before a game it waits for the game to look for pads, plugs one in, and
   presses what the lines of a pipe say, as "0 1" for its A going down. The game sees each line, however slow it is. */
#define _GNU_SOURCE
#include <SDL.h>

#include <dlfcn.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>

enum { AXES = 6, BUTTONS = 15, LOOK_AGAIN_MS = 5, SEEN_AFTER = 2 };

static SDL_atomic_t looks; /* of the game at its pads */

void SDL_GameControllerUpdate(void)
{
    static void (*real)(void);
    if (!real)
        real = (void (*)(void))dlsym(RTLD_NEXT, "SDL_GameControllerUpdate");
    real();
    SDL_AtomicAdd(&looks, 1);
}

static void waitUntilSeen(void)
{
    const int before = SDL_AtomicGet(&looks);
    while (SDL_AtomicGet(&looks) - before < SEEN_AFTER)
        SDL_Delay(LOOK_AGAIN_MS);
}

static void *serve(void *name)
{
    FILE *lines = fopen(name, "r");
    unsigned button, down;
    SDL_Joystick *pad;
    int device;
    if (!lines)
        return NULL;
    while (!SDL_WasInit(SDL_INIT_GAMECONTROLLER))
        SDL_Delay(LOOK_AGAIN_MS);
    device = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, AXES, BUTTONS, 0);
    pad = device < 0 ? NULL : SDL_JoystickOpen(device);
    if (!pad)
        fprintf(stderr, "The virtual pad cannot be plugged in: %s\n", SDL_GetError());
    while (pad && fscanf(lines, "%u %u", &button, &down) == 2)
    {
        SDL_JoystickSetVirtualButton(pad, (int)button, (Uint8)down);
        waitUntilSeen();
    }
    fclose(lines);
    return NULL;
}

__attribute__((constructor)) static void begin(void)
{
    pthread_t thread;
    char *name = getenv("VIRTUAL_PAD");
    unsetenv("LD_PRELOAD"); /* what the game starts has no pad */
    if (name && pthread_create(&thread, NULL, serve, name) == 0)
        pthread_detach(thread);
}
