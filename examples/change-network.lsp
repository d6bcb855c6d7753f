; Changes a network as an engineer would: a pipe gets another diameter, a well another place. The
; pipes at the well go with it. Labels are left as they are; pipenote update, or (labelupdate),
; brings them up to date.
;
;   pipenote run net.dxf examples/change-network.lsp -e '(change-diameter "J1-029.1" 600.0)'
;       -e '(move-well "J1-027" 10.0 30.0)' -o changed.dxf
;
; The data of pipes and wells are pairs of a key and a value, see docs/pipes-and-wells.md.

(defun pairs-of (owner)
  (cdr (cadr (assoc -3 (entget owner '("PIPENOTE"))))))

(defun value-of (owner key / rest)
  (if (setq rest (member (cons 1000 key) (pairs-of owner))) (cdr (cadr rest))))

(defun with-value (pairs key value)
  (cond ((null pairs) nil)
        ((equal (car pairs) (cons 1000 key))
         (cons (car pairs) (cons (cons (car (cadr pairs)) value) (cddr pairs))))
        (T (cons (car pairs) (cons (cadr pairs) (with-value (cddr pairs) key value))))))

(defun set-value (owner key value)
  (entmod (list (cons -1 owner)
                (list -3 (cons "PIPENOTE" (with-value (pairs-of owner) key value))))))

; All pipes and wells.
(defun owners (/ set n found)
  (if (setq set (ssget "X" '((-3 ("PIPENOTE")))))
    (repeat (setq n (sslength set))
      (setq n (1- n) found (cons (ssname set n) found))))
  found)

; The one whose key has that value.
(defun owner-with (key value / found)
  (foreach owner (owners)
    (if (equal (value-of owner key) value) (setq found owner)))
  (if (not found) (progn (princ (strcat "\nno " key " is " value)) (exit)))
  found)

(defun handle (entity) (cdr (assoc 5 (entget entity))))

(defun told (owner) (princ (strcat (handle owner) "\n")))

(defun change-diameter (code diameter / pipe)
  (setq pipe (owner-with "code" code))
  (set-value pipe "diameter" diameter)
  (told pipe)
  (princ))

(defun moved (group dx dy)
  (list (car group) (+ (cadr group) dx) (+ (caddr group) dy) (cadddr group)))

(defun move-group (entity code dx dy / data)
  (setq data (entget entity))
  (entmod (subst (moved (assoc code data) dx dy) (assoc code data) data)))

; Pipes are lines here; one with bends would have its first or last vertex moved.
(defun move-end (pipe key well code dx dy)
  (if (equal (value-of pipe key) (handle well))
    (progn
      (move-group pipe code dx dy)
      (if (value-of pipe "length")
        (set-value pipe "length"
                   (distance (cdr (assoc 10 (entget pipe))) (cdr (assoc 11 (entget pipe))))))
      (told pipe))))

(defun move-well (number dx dy / well)
  (setq well (owner-with "number" number))
  (move-group well 10 dx dy)
  (told well)
  (foreach pipe (owners)
    (if (= (cdr (assoc 0 (entget pipe))) "LINE")
      (progn
        (move-end pipe "start_node" well 10 dx dy)
        (move-end pipe "end_node" well 11 dx dy))))
  (princ))
