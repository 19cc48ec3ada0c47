import { EventEmitter } from 'events';

/** A category's identifier: "Privacy_AllFiles", "Privacy_Calendars", "Privacy_Camera", … */
export type Identifier = string;
/** 0 not determined, 1 denied, 2 authorized. */
export type Status = 0 | 1 | 2;
/** 0 the system asks the user, 1 the user grants it in System Settings, 2 Vantro can only look. */
export type RequestType = 0 | 1 | 2;

export interface StatusChange {
  identifier: Identifier;
  oldStatus: Status;
  newStatus: Status;
}

/** A simulated Mac (Linux only), with a virtual clock and a scripted user. */
export interface SimulatedMac {
  /** Lets virtual time pass. */
  runFor(seconds: number): void;
  /** Virtual seconds since the Mac was made. */
  readonly now: number;
  /** The user sets a category in System Settings. */
  setStatus(identifier: Identifier, status: Status): void;
  grant(identifier: Identifier): void;
  deny(identifier: Identifier): void;
  /** The user's answer to the system's next prompt (without one: "Don't Allow" after a second). */
  answerNextPrompt(allow: boolean): void;
  /** The user switches to another application. */
  leaveHost(): void;
  /** The user comes back to the application. */
  returnToHost(): void;
  /** The user drags the app's icon from the guide's overlay into System Settings' list (and switches it on). */
  dragIconIntoList(): void;
  /** Ends this Mac; also done by the next simulate(). */
  destroy(): void;
}

export interface SimulateOptions {
  /** The macOS release: "10.14", "11", "13", "15", … (default "15"). */
  macos?: string;
  /** Categories the user has already granted or denied. */
  grant?: Identifier[];
  deny?: Identifier[];
  /** The user's language: "en", "fr", "de", "ja", … (default "en"). */
  language?: string;
}

/**
 * Errors carry a `code`: VANTRO_ERROR_UNKNOWN_IDENTIFIER, VANTRO_ERROR_NOT_SET_UP,
 * VANTRO_ERROR_INVALID_UTF8, VANTRO_ERROR_NULL_ARGUMENT, VANTRO_ERROR_WRONG_THREAD,
 * VANTRO_ERROR_OUT_OF_RANGE, VANTRO_ERROR_INTERNAL, or (macOS, outside Electron's main
 * process) VANTRO_ERROR_NO_RUN_LOOP. Every function runs on the main thread.
 */
export interface Vantro extends EventEmitter {
  readonly STATUS: { notDetermined: 0; denied: 1; authorized: 2 };
  readonly REQUEST_TYPE: { request: 0; grant: 1; check: 2 };
  /** The library's release, "1.0.0". */
  readonly version: string;
  status(identifier: Identifier): Status;
  requestType(identifier: Identifier): RequestType;
  /** Asks for a category; silent shows nothing of Vantro's own. No completion: watch or ask again. */
  request(identifier: Identifier, options?: { silent?: boolean }): void;
  /** Leads the user to the category in System Settings (null: the privacy settings). */
  guide(identifier: Identifier | null, options?: { message?: string }): void;
  stopGuide(): void;
  isOverlayShown(): boolean;
  /** The categories of the running macOS release. */
  categories(): Identifier[];
  /** A category's label in the user's language. */
  label(identifier: Identifier): string;
  /** Screen Recording, Input Monitoring, Camera, Microphone and Bluetooth: off until set. */
  newerCategories: boolean;
  /** Watches these categories (replacing the list); changes are emitted as 'change'. Returns a function that stops. */
  watch(identifiers: Identifier[], callback?: (change: StatusChange) => void): () => void;
  on(event: 'change', listener: (change: StatusChange) => void): this;
  once(event: 'change', listener: (change: StatusChange) => void): this;
  /** Linux: makes a simulated Mac to run on (ending the previous one). */
  simulate(options?: SimulateOptions): SimulatedMac;
}

declare const vantro: Vantro;
export = vantro;
