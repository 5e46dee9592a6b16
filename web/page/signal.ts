// A list of listeners for one kind of event.
export class Signal<T> {
    private readonly listeners: Array<(value: T) => void> = [];

    listen(listener: (value: T) => void): void {
        this.listeners.push(listener);
    }

    send(value: T): void {
        for (const listener of this.listeners) {
            listener(value);
        }
    }
}
