// Gives a program the environment of the Node.js process that runs it.
Module.preRun = [() => Object.assign(ENV, process.env)];
