// The module's only state: the translator object that the exports speak to. The loader
// notifications make and destroy it.
#pragma once

class EcrCmdCommand;

extern EcrCmdCommand* translator_instance;
