/** What a job has registered; `number` is null of a day closing. */
export interface JobDocument {
  closure: number;
  number: number | null;
  serial: string;
  time: string | null;
  total: string | null;
  kind?: "receipt" | "invoice" | "refund" | "void" | null;
}

export type JobState =
  | "queued" | "running" | "confirmed" | "rejected" | "unknown" | "needs_operator" | "expired" | "cancelled";

export interface Job {
  id: number;
  key: string;
  desk: string;
  reference: string;
  state: JobState;
  document: JobDocument | null;
  lines: { line: number; code: number; text: string; explanation: string }[];
  replayed: boolean;
  history: { time: string; state: JobState; why: string }[];
}

/** What became of a request. "refused", "failed", "away": nothing was done. "unknown", "needs_operator":
 *  it may have been; ask again with `key`, never with another one. */
export class DoorError extends Error {
  readonly kind: "refused" | "failed" | "away" | "unknown" | "needs_operator";
  /** The code of the problem ("key_reused"); empty where there is none. */
  readonly code: string;
  /** The status of HTTP; 0 without an answer. */
  readonly status: number;
  readonly problem: Record<string, unknown>;
  readonly key: string | null;
  readonly job: Job | null;
}

export interface AskOptions {
  /** A new one where it is missing; one that is given counts as used before, and is never told as "away". */
  key?: string;
  reference?: string;
  /** Seconds after which it is not to begin; 600 where it is missing. */
  expires_s?: number;
  /** Seconds for its outcome; 60 where it is missing. */
  wait?: number;
}

/** Asked for, and the outcome not known; `made` in milliseconds since 1970, by the till's clock. */
export interface PendingRequest {
  key: string;
  path: string;
  body: Record<string, unknown>;
  made: number;
}

export interface Outcome {
  request: PendingRequest;
  job: Job | null;
  error: DoorError | null;
}

export interface DoorEvent {
  id: number | null;
  event: string;
  data: unknown;
}

export class Door {
  /**
   * @param url "http://127.0.0.1:8577"
   * @param options.token "NAME.SECRET"
   * @param options.desk whose keys these are; without it the name of the token
   * @param options.storage what outlives the page, as localStorage; one till to a desk
   * @param options.patience seconds for which a request is sent again while no door takes it; 60
   * @param options.timeout seconds for an answer, beside what is waited for an outcome; 20
   * @param options.signal ends what waits
   */
  constructor(url: string | URL, options?: {
    token?: string;
    desk?: string;
    storage?: Pick<Storage, "getItem" | "setItem" | "removeItem">;
    patience?: number;
    timeout?: number;
    signal?: AbortSignal;
  });
  static newKey(): string;
  /** Lines of the language as a job. What comes back is confirmed; everything else is thrown, as DoorError. */
  sell(lines: string[], options?: AskOptions): Promise<Job>;
  /** A document without the language. */
  receipt(receipt: Record<string, unknown>, options?: AskOptions): Promise<Job>;
  /** An operator's. */
  closeDay(options?: AskOptions): Promise<Job>;
  /** Gives up what is open on the device; an operator's. */
  reset(options?: AskOptions): Promise<Job>;
  /** Lines and sums of a receipt; nothing is sent. */
  dryRun(receipt: Record<string, unknown>): Promise<Record<string, unknown>>;
  job(id: number): Promise<Job>;
  /** The job of a key of this desk; null where the door has none. */
  find(key: string): Promise<Job | null>;
  /** By number, behind `after`, of a state or of all, a page at a time. */
  jobs(query?: { state?: JobState; after?: number }): AsyncGenerator<Job, void, void>;
  /** Prints a copy of a document; an operator's. `kind` where an invoice and another one have the numbers. */
  copy(closure: number, number: number, options?: AskOptions & { kind?: string }): Promise<Job>;
  /** What the device has registered, by ISO 8601 dates or times; of the status 501 where it does not tell. */
  documents(span?: { from?: string; to?: string }): AsyncGenerator<JobDocument, void, void>;
  /** A document as it was printed: "text/plain", "image/png" or "application/json". */
  document(closure: number, number: number, options?: { accept?: string; kind?: string }): Promise<Uint8Array>;
  cancel(id: number): Promise<Job>;
  resolve(id: number, resolution: {
    outcome: "done" | "not_done";
    reason: string;
    document?: { closure: number; number?: number | null };
  }): Promise<Job>;
  device(): Promise<Record<string, unknown>>;
  readonly pending: PendingRequest[];
  /** Asks again for all that is pending, the oldest first. */
  resume(options?: { wait?: number }): Promise<Outcome[]>;
  /** Events as they come; after "reset" some are missing. `silence`: seconds without a sign of the door, three
   *  times what it lets pass, until the connection is made again; 45. */
  events(options?: { after?: number; signal?: AbortSignal; silence?: number }): AsyncGenerator<DoorEvent, void, void>;
}
